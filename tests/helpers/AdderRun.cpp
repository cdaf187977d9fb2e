#include "tests/helpers/AdderRun.h"

#include "helpers/common/FaceReport.h"

#include <QFile>
#include <QProcess>
#include <QStringList>

AdderRun AdderRun::of(const QString& fileName, int faceIndex)
{
    return withArguments({QStringLiteral("-i"),
                          QStringLiteral("0x") + QString::fromLatin1(QFile::encodeName(fileName).toHex()),
                          QStringLiteral("-d"), QStringLiteral("stdout"), QStringLiteral("--useReducedCharset"),
                          QStringLiteral("-g"), QString::number(faceIndex)});
}

AdderRun AdderRun::withArguments(const QStringList& arguments, int processorSeconds)
{
    const QString program = QStringLiteral(KERVAL_BIN_DIR "/krvfontadder.exe");
    QProcess process;
    if (processorSeconds > 0)
        process.start(QStringLiteral("/bin/sh"),
                      QStringList{QStringLiteral("-c"),
                                  QStringLiteral("ulimit -S -t %1; exec \"$0\" \"$@\"").arg(processorSeconds),
                                  program} +
                          arguments);
    else
        process.start(program, arguments);

    AdderRun run;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = process.exitCode();
    run.output = process.readAllStandardOutput();
    run.complaint = process.readAllStandardError();

    using namespace kerval::helpers;
    const auto payload = openEnvelope({run.output.constData(), static_cast<std::size_t>(run.output.size())});
    const auto report = payload ? parseFaceReport(*payload) : std::nullopt;
    if (!report)
        return run;
    for (const auto& [key, value] : report->information)
        run.information.insert(QString::fromStdString(key), QString::fromStdString(value));
    for (const auto& [code, vector] : report->features)
        run.features.insert(code, QByteArray::fromStdString(toBytes(vector)));
    return run;
}

QString testFont(const QString& name)
{
    return QStringLiteral(KERVAL_SOURCE_DIR "/tests/data/fonts/") + name;
}
