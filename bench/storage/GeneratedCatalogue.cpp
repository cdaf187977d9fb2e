#include "bench/storage/GeneratedCatalogue.h"

#include "qtService/database/AdderDataFontFactory.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace kerval::bench {

namespace {

QString words(QRandomGenerator& random, int count)
{
    static const QStringList vocabulary =
        QStringLiteral(
            "the font software may be used modified and redistributed freely under these terms provided that "
            "no part of it is sold by itself copyright holders grant permission to any person obtaining a "
            "copy letter shapes drawn for long reading and display sizes with open counters sturdy serifs "
            "generous spacing inspired by punches cut in the eighteenth century Garamond Caslon Bodoni "
            "Clarendon Gothic Roman Antiqua Mono Slab Script Display Text Caption Poster")
            .split(QLatin1Char(' '));
    QString text;
    for (int i = 0; i < count; ++i)
        text += (i ? QStringLiteral(" ") : QString()) + vocabulary.at(random.bounded(vocabulary.size()));
    return text;
}

QStringList pool(QRandomGenerator& random, int size, int fewestWords, int mostWords)
{
    QStringList texts;
    for (int i = 0; i < size; ++i)
        texts.append(words(random, random.bounded(fewestWords, mostWords + 1)) + QStringLiteral(" %1").arg(i));
    return texts;
}

} // namespace

QList<StaticFontPtr> generateFonts(int count, int firstNumber)
{
    QRandomGenerator shared(1);
    const QStringList licenses = pool(shared, 400, 330, 1000);
    const QStringList foundries = pool(shared, 300, 1, 2);
    const QStringList designers = pool(shared, 3000, 2, 3);
    const QStringList styles = QStringLiteral("Thin,Thin Italic,Light,Light Italic,Regular,Italic,Medium,Medium Italic,"
                                              "Bold,Bold Italic,Black,Black Italic")
                                   .split(QLatin1Char(','));
    QList<StaticFontPtr> fonts;
    int number = firstNumber;
    for (int family = firstNumber; fonts.size() < count; ++family) {
        QRandomGenerator random(quint32(family) + 7);
        const QString name = words(random, 2) + QStringLiteral(" %1").arg(family);
        const QString foundry = foundries.at(random.bounded(foundries.size()));
        const QString description = words(random, random.bounded(15, 60));
        const QString folder = QStringLiteral("/home/someone/Fonts/%1/%2/").arg(foundry.left(12), name);
        QHash<QString, QString> info;
        const auto set = [&info](const char* key, const QString& value) { info.insert(QLatin1String(key), value); };
        set("face_name", name);
        set("menu_family_name", name);
        set("version", QStringLiteral("Version 1.%1").arg(random.bounded(200)));
        set("vendor", foundry);
        set("vendor_url", QStringLiteral("http://www.foundry%1.example/").arg(foundry.size()));
        set("designer", designers.at(random.bounded(designers.size())));
        set("designer_url", QStringLiteral("http://designer.example/"));
        set("description", description);
        set("trademark", name + QStringLiteral(" is a trademark of ") + foundry);
        set("format", random.bounded(3) ? QStringLiteral("TrueType") : QStringLiteral("OpenType"));
        set("foundry", foundry);
        set("license", licenses.at(random.bounded(licenses.size())));
        set("license_url", QStringLiteral("http://scripts.example/license"));
        const int faces = qMin(random.bounded(1, 13), count - fonts.size());
        for (int face = 0; face < faces; ++face, ++number) {
            const QString style = styles.at(face);
            const QString psName =
                QString(name).remove(QLatin1Char(' ')) + QLatin1Char('-') + QString(style).remove(QLatin1Char(' '));
            const QString path = folder + psName + QStringLiteral(".ttf");
            const QByteArray digest = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex();
            set("file_name", path);
            set("original_file_name", path);
            set("style", style);
            set("menu_style_name", style);
            set("full_name", name + QLatin1Char(' ') + style);
            set("ps_name", psName);
            set("sfnt_ps_name", psName);
            set("filehash", QString::fromLatin1(digest));
            set("other_info2", face % 2 ? QStringLiteral("Serif,Classic") : QStringLiteral("Modern"));
            set("hwe", QString::number(100 + 40 * face));
            set("hwi", QString::number(random.bounded(1000)));
            set("hhe", QString::number(random.bounded(1000)));
            set("specific_width", QString::number(random.bounded(700, 2000)));
            set("specific_height", QString::number(random.bounded(80, 130)));
            set("supported_subsets", QStringLiteral("0,1,2,3,7,8,%1").arg(random.bounded(10, 30)));
            set("latin_metrics_correction",
                QStringLiteral("%1E+00;6.0000E-01;8.0000E-01").arg(1 + 0.0001 * random.bounded(999)));
            set("full_metrics_correction",
                QStringLiteral("%1E+00;6.5000E-01;8.0000E-01").arg(1 + 0.0001 * random.bounded(999)));
            set("added", QString::number(1600000000 + number));
            set("last_seen", QString::number(1700000000));
            fonts.append(AdderDataFontFactory::instance()->createFont(info));
        }
    }
    return fonts;
}

} // namespace kerval::bench
