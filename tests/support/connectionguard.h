#pragma once

class LogCapture;

/**
 * To be called in a test's cleanup(): the test fails when a database connection is left registered
 * (those of the bench excepted), or when Qt complained that one is still in use or that an object
 * or a connection was used on the wrong thread.
 */
void checkConnections(const LogCapture &log);
