#pragma once

class Invocation;
class QCommandLineParser;

// Each command: the options that are its own, and its work, which gives the exit status.

void describeStatus(QCommandLineParser &parser);
int runStatus(const Invocation &invocation);

void describeWhy(QCommandLineParser &parser);
int runWhy(const Invocation &invocation);

void describePreview(QCommandLineParser &parser);
int runPreview(const Invocation &invocation);

void describeRun(QCommandLineParser &parser);
int runRun(const Invocation &invocation);

void describeSet(QCommandLineParser &parser);
int runSet(const Invocation &invocation);

void describeCheck(QCommandLineParser &parser);
int runCheck(const Invocation &invocation);
