// An application for tests, made on first use and kept for the process: windows need one, and the toolkit wants
// it once.
#ifndef TESTS_SUPPORT_TESTAPP_H
#define TESTS_SUPPORT_TESTAPP_H

class TApplication;

TApplication &TestApplication();
double TestScale(); // display scale of this run, from QT_SCALE_FACTOR

#endif
