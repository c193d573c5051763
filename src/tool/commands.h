#pragma once

class Invocation;
class QCommandLineParser;

// Each command in two functions: describe... adds the options that are its own, run... does its
// work and gives the exit status, one of Tool::Status or that of an interruption. What went wrong
// is on standard error by then, or in the collected warnings, which Tool::run prints. A command
// opens what it needs and leaves no connection behind. All on the main thread.

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
