// An application for tests, made on first use and kept for the process: windows need one, and the toolkit wants
// it once.
#ifndef TESTS_SUPPORT_TESTAPP_H
#define TESTS_SUPPORT_TESTAPP_H

class TApplication;

TApplication &TestApplication();
double TestScale(); // display scale of this run, from QT_SCALE_FACTOR

/// The platform's services while it lives: messages in boxes, texts in the status line. A test without it has
/// the core library's defaults.
class TestServices
{
public:
    TestServices();
    ~TestServices();
    TestServices(const TestServices &) = delete;
    TestServices &operator=(const TestServices &) = delete;
};

#endif
