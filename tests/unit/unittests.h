#pragma once

#include <QTest>

#include <QApplication>

#include <vector>

// The unit tests are one program, which runs those of one file: unittests tst_sterror [ARGUMENTS OF QTEST]. A process has
// the tests of one file only, so that they do not see what others have left behind.
namespace unit {

// Runs the tests of a class as QTest::qExec() does. Returns how many have failed.
using Run = int (*)(int argc, char** argv);

struct Tests
{
    const char* name; // that of their file, without its ending
    Run run;
};

// Those of all files.
std::vector<Tests>& allTests();

// Adds those of a file.
class Registration
{
public:
    Registration(const char* name, Run run) { allTests().push_back({name, run}); }
};

template <class Test>
int withApplication(int argc, char** argv)
{
    const QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template <class Test>
int withoutApplication(int argc, char** argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace unit

// Stands at the end of each file: UNIT_TESTS(tst_sterror, unit::withoutApplication<tst_STError>)
#define UNIT_TESTS(file, run) static const unit::Registration registrationOf_##file(#file, run);
