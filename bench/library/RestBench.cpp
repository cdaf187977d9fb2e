#include "bench/storage/GeneratedCatalogue.h"
#include "bench/support/bench.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/MatchingCriteria.h"
#include "rest/FontJson.h"
#include "rest/Server.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

// What plug-ins wait for: one page of a large catalogue over HTTP, beyond the time that the selection itself takes, and
// a long list of fonts as JSON beside the framework's own way of writing one.

namespace {

const int catalogueSize = 100000;
const int listLength = 10000;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void useHome(const QString& path)
{
    const QByteArray root = QFile::encodeName(path);
    for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, root);
    QFile configuration(path + QStringLiteral("/fonts.conf"));
    if (!configuration.open(QIODevice::WriteOnly))
        std::abort();
    configuration.write(
        "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\"><fontconfig/>");
    qputenv("FONTCONFIG_FILE", root + "/fonts.conf");
}

// From the connection to the last byte, by a client on a thread of its own.
double secondsForRequest(quint16 port, const QByteArray& target)
{
    double taken = 0;
    const std::unique_ptr<QThread> client(QThread::create([&] {
        taken = kerval::bench::seconds([&] {
            QTcpSocket socket;
            socket.connectToHost(QStringLiteral("127.0.0.1"), port);
            socket.waitForConnected();
            socket.write("GET " + target + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
            QByteArray answer;
            while (socket.waitForReadyRead(60000))
                answer += socket.readAll();
            if (!answer.startsWith("HTTP/1.1 200") || !answer.endsWith("]"))
                std::abort();
        });
    }));
    QEventLoop loop;
    QObject::connect(client.get(), &QThread::finished, &loop, &QEventLoop::quit);
    client->start();
    loop.exec();
    return taken;
}

void measurePage(FontManagementService& service, quint16 port)
{
    const auto repository = service.repository();
    std::vector<double> beyond;
    for (int i = 0; i < 51; ++i) {
        const double page = secondsForRequest(port, "/fonts?page=700&per_page=50");
        const double selection =
            kerval::bench::seconds([&] { repository->findMatchingFonts(MatchingCriteria::allOf()); });
        beyond.push_back((page - selection) * 1000);
    }
    kerval::bench::atMost("GET /fonts, page of 50 of 100,000, beyond the selection", median(beyond), 2, "ms");
}

// By what is slowest to compare: long texts that begin alike.
void measureSortedPage(quint16 port)
{
    std::vector<double> taken;
    for (int i = 0; i < 15; ++i)
        taken.push_back(secondsForRequest(port, "/fonts?page=700&per_page=50&sort_by=fileName") * 1000);
    kerval::bench::atMost("GET /fonts sorted by file name, page of 50 of 100,000", median(taken), 300, "ms");
}

QJsonValue urlValue(const QUrl& url)
{
    return url.isEmpty() ? QJsonValue() : QJsonValue(url.toString(QUrl::FullyEncoded));
}

// The same members by the framework's classes, read through the same getters.
QJsonObject jsonObject(const fms::StaticFont& font, const FontGroup& systemFonts, const FontGroup& duplicates)
{
    QJsonObject object;
    const auto add = [&object](const char* name, const QJsonValue& value) {
        object.insert(QLatin1String(name), value);
    };
    add("familyName", font.familyName());
    add("styleName", font.styleName());
    add("postScriptName", font.postScriptName());
    add("fileName", font.fileName());
    add("version", font.version());
    add("vendor", font.vendor());
    add("vendorUrl", urlValue(font.vendorUrl()));
    add("designer", font.designer());
    add("designerUrl", urlValue(font.designerUrl()));
    add("description", font.description());
    add("trademark", font.trademark());
    add("license", font.license());
    add("licenseUrl", urlValue(font.licenseUrl()));
    add("format", font.format());
    add("foundry", font.foundry());
    add("dateAdded", QJsonValue::fromVariant(font.dateAdded()));
    add("userNote", font.userNote());
    add("otherInfo2", font.otherInfo2());
    add("id", font.id());
    add("isBold", font.isBold());
    add("isItalic", font.isItalic());
    add("activityType", font.activityType());
    add("italicAngle", font.italicAngle());
    add("isHidden", font.isHidden());
    const QSet<int> subsets = font.supportedSubsets();
    std::vector<int> sorted(subsets.cbegin(), subsets.cend());
    std::sort(sorted.begin(), sorted.end());
    QJsonArray list;
    for (const int subset : sorted)
        list.append(subset);
    add("supportedSubsets", list);
    add("isSystemFont", systemFonts.containsFont(font.id()));
    add("isDuplicateFont", duplicates.containsFont(font.id()));
    add("characters", QStringLiteral("http://localhost:33000/characters/%1").arg(font.id()));
    add("#", 0);
    return object;
}

void measureList(FontManagementService& service)
{
    const QList<StaticFontPtr> fonts = service.repository()->fonts().mid(0, listLength);
    const auto systemFonts = service.systemFontGroups()->group(SystemFontGroupList::SystemFonts);
    const auto duplicates = service.systemFontGroups()->group(SystemFontGroupList::DuplicateFonts);
    QByteArray ours;
    QByteArray theirs;
    kerval::bench::compare(
        "10,000 fonts as JSON beside QJsonDocument", 0.5,
        [&] {
            return kerval::bench::seconds([&] {
                ours.clear();
                api::rest::FontJson fontJson(service, QUrl(QStringLiteral("http://localhost:33000")));
                api::rest::JsonWriter json(ours);
                json.beginArray();
                for (const StaticFontPtr& font : fonts)
                    fontJson.write(json, *font, 0);
                json.endArray();
            });
        },
        [&] {
            return kerval::bench::seconds([&] {
                QJsonArray array;
                for (const StaticFontPtr& font : fonts)
                    array.append(jsonObject(*font, *systemFonts, *duplicates));
                theirs = QJsonDocument(array).toJson(QJsonDocument::Compact);
            });
        });
    // Members come in another order there; the content is the same.
    if (ours.size() != theirs.size() || QJsonDocument::fromJson(ours) != QJsonDocument::fromJson(theirs))
        std::fprintf(stderr, "the two lists differ: %d and %d bytes\n", ours.size(), theirs.size());
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    useHome(home.path());
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    const auto service = QSharedPointer<FontManagementService>::create();
    QEventLoop starting;
    QObject::connect(service.data(), &FontManagementService::started, &starting, &QEventLoop::quit);
    service->start();
    starting.exec();
    service->repository()->addFonts(kerval::bench::generateFonts(catalogueSize));
    {
        api::rest::Server server(service);
        if (!server.listen(0))
            return 1;
        measurePage(*service, server.port());
        measureSortedPage(server.port());
        measureList(*service);
    }
    QEventLoop stopping;
    QObject::connect(service.data(), &FontManagementService::stopped, &stopping, &QEventLoop::quit);
    service->stop();
    stopping.exec();
    return 0;
}
