# Debian packages the project needs; sourced by scripts/bootstrap. "build" compiles and runs it, "test" adds what the
# tests call, fonts included.
build_packages=(
    build-essential cmake ninja-build ccache mold pkg-config
    qtbase5-dev qtbase5-private-dev qtscript5-dev qtdeclarative5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev
    libqt5sql5-sqlite qt5-image-formats-plugins qttranslations5-l10n qml-module-qtquick2 qml-module-qtquick-controls2 qml-module-qtquick-window2
    libfreetype-dev libharfbuzz-dev libfontconfig-dev libsqlite3-dev libminizip-dev zlib1g-dev libhttp-parser-dev libssl-dev
    librsvg2-bin fontconfig fonts-dejavu-core
)
test_packages=(
    clang-format python3 sqlite3 curl zip unzip poppler-utils libharfbuzz-bin xvfb xauth xdotool dbus
    fonts-dejavu-extra fonts-liberation fonts-freefont-ttf fonts-cantarell fonts-lobstertwo
)
