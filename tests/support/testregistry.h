#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

// Test classes of one program announce themselves here; the shared main runs them in the order of their names.
namespace kerval::testing {

struct TestClass
{
    const char* name;
    std::function<std::unique_ptr<QObject>()> create;
};

std::vector<TestClass>& testClasses();

template <class Test>
bool registerTest(const char* name)
{
    testClasses().push_back({name, [] { return std::make_unique<Test>(); }});
    return true;
}

// A test that provokes a framework warning on purpose names (part of) its text here; others fail the program.
void allowFrameworkWarning(const QString& part);

// Set before main runs by programs that need widgets; the others make a QGuiApplication.
using ApplicationFactory = std::function<std::unique_ptr<QObject>(int&, char**)>;
void setApplicationFactory(ApplicationFactory factory);

} // namespace kerval::testing

#define KERVAL_TEST(Class) static const bool registered_##Class = kerval::testing::registerTest<Class>(#Class);
