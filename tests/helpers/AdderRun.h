#pragma once

#include <QHash>
#include <QString>

// One run of the real adder program on one face, as the service starts it.
struct AdderRun
{
    int exitCode = -1; // -1 when it did not start or crashed
    QByteArray output;
    QByteArray complaint;
    QHash<QString, QString> information;
    QHash<int, QByteArray> features;

    static AdderRun of(const QString& fileName, int faceIndex = 0);

    // With the arguments as they are, and at most this many processor seconds where that is not 0.
    static AdderRun withArguments(const QStringList& arguments, int processorSeconds = 0);
};

// A font of tests/data/fonts.
QString testFont(const QString& name);
