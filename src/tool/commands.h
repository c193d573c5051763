#pragma once

class Invocation;
class QCommandLineParser;

// Each command is two functions. describe...() adds the command's own options. run...() does the
// work and returns the exit status: a Tool::Status or Interruption::status(). It prints its errors
// itself, or logs them for Tool::run() to print. It leaves no connection open. Call these functions
// on the main thread.

void describeStatus(QCommandLineParser &parser);
int runStatus(const Invocation &invocation);

void describeWhy(QCommandLineParser &parser);
int runWhy(const Invocation &invocation);

void describeHistory(QCommandLineParser &parser);
int runHistory(const Invocation &invocation);

void describePreview(QCommandLineParser &parser);
int runPreview(const Invocation &invocation);

void describeRun(QCommandLineParser &parser);
int runRun(const Invocation &invocation);

void describeSet(QCommandLineParser &parser);
int runSet(const Invocation &invocation);

void describeCheck(QCommandLineParser &parser);
int runCheck(const Invocation &invocation);
