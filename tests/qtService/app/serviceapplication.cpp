#include "qtService/app/FMService.h"
#include "tests/support/testregistry.h"

namespace {

// The service is the application object, so these tests run inside one.
const bool factorySet = [] {
    kerval::testing::setApplicationFactory(
        [](int& argc, char** argv) -> std::unique_ptr<QObject> { return std::make_unique<FMService>(argc, argv); });
    return true;
}();

} // namespace
