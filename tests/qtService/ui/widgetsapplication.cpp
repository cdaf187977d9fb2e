#include "qtService/ui/widgets/InterfaceFont.h"
#include "tests/support/testregistry.h"

#include <QApplication>

namespace {

const bool factorySet = [] {
    kerval::testing::setApplicationFactory([](int& argc, char** argv) -> std::unique_ptr<QObject> {
        auto application = std::make_unique<QApplication>(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        ui::ensureInterfaceFont();
        return application;
    });
    return true;
}();

} // namespace
