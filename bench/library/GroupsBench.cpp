#include "bench/support/bench.h"
#include "qtService/app/service/SetFontsHiddenCommand.h"
#include "qtService/database/StaticFont.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/qtService/management/StandardGroups.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <vector>

// Hiding and showing 10,000 of 100,000 fonts by the command the window uses, until every group has followed; and the
// groups' start, which a user with many groups of his own waits for.

namespace {

const int fontCount = 100000;
const int hiddenCount = 10000;
const int userGroups = 50;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    TestLibrary library;

    QList<StaticFontPtr> fonts;
    fonts.reserve(fontCount);
    for (int i = 0; i < fontCount; ++i) {
        fonts.append(TestLibrary::makeFont(QStringLiteral("/home/fonts/%1/face%2.otf").arg(i % 300).arg(i),
                                           QString::number(i), 0, 1000000 + uint(i)));
        if (i % 50 == 0) {
            fonts.last()->setDateActivated(QDateTime::fromSecsSinceEpoch(2000000 + i));
            fonts.last()->setFileHash(QStringLiteral("copy"));
        }
    }
    const QList<int> ids = library.addFonts(fonts);

    QStringList hashes;
    for (int i = 0; i < fontCount; i += 5)
        hashes.append(fonts.at(i)->fontHash());
    for (int i = 0; i < userGroups; ++i) {
        const int groupId = library.userDatabase->addGroup(QStringLiteral("group %1").arg(i), 0);
        library.userDatabase->addFontsToGroup(hashes.mid(i * 200, 1000), groupId);
    }

    QScopedPointer<StandardGroups> groups;
    const double start = kerval::bench::seconds(
        [&] { groups.reset(new StandardGroups(library.repository, library.userDatabase.data())); });
    kerval::bench::atMost("making the standard groups and 50 user groups, 100,000 fonts", start * 1000, 1500, "ms");

    QList<int> chosen;
    for (int i = 0; i < hiddenCount; ++i)
        chosen.append(ids.at((i * 10 + i % 7) % fontCount));
    const auto setHidden = [&](bool hidden) {
        const double taken = kerval::bench::seconds([&] {
            SetFontsHiddenCommand command(chosen, hidden, library.repository);
            command.start();
            command.waitForFinished();
            QCoreApplication::sendPostedEvents();
        });
        const int hiddenNow = groups->group(SystemFontGroupList::HiddenFonts)->fontCount();
        const int shownNow = groups->group(SystemFontGroupList::AllFonts)->fontCount();
        if (hiddenNow != (hidden ? hiddenCount : 0) || shownNow != fontCount - hiddenNow) {
            std::fprintf(stderr, "the groups did not follow: %d hidden, %d shown\n", hiddenNow, shownNow);
            std::exit(1);
        }
        return taken * 1000;
    };
    std::vector<double> hiding;
    std::vector<double> showing;
    for (int i = 0; i < 5; ++i) {
        hiding.push_back(setHidden(true));
        showing.push_back(setHidden(false));
    }
    kerval::bench::atMost("hiding 10,000 of 100,000 fonts, every group following", median(hiding), 1000, "ms");
    kerval::bench::atMost("showing 10,000 of 100,000 fonts, every group following", median(showing), 1000, "ms");

    const StaticFontPtr one = library.repository->font(ids.at(fontCount / 2));
    const double single = kerval::bench::seconds([&] {
        one->setUserNote(QStringLiteral("note"));
        library.repository->updateFonts({one}, {QStringLiteral("userNote")});
        QCoreApplication::sendPostedEvents();
    });
    kerval::bench::atMost("one changed font, every group following", single * 1000, 100, "ms");
    return 0;
}
