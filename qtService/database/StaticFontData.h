#pragma once

#include "qtService/database/SharedText.h"
#include "qtService/database/StaticFont.h"

#include <QReadLocker>
#include <QSharedData>
#include <QVariant>

#include <array>

namespace fms {

// A moment as records hold it: the decimal text of Unix seconds. Nearly every text is such a number, and is kept as
// one.
class SecondsText
{
public:
    void set(const QString& text);
    void set(const QDateTime& moment);
    void setSeconds(quint32 seconds);
    QString text() const;
    // The epoch when the text is no int.
    QDateTime moment() const;
    qint64 seconds() const;

private:
    qint64 m_number = -1; // -1: see m_other
    QString m_other;
};

// The numbers of a font's character subsets; those of the block table lie below 64.
class SubsetNumbers
{
public:
    void clear();
    void insert(int number);
    void set(const QSet<int>& numbers);
    QSet<int> numbers() const;
    // Ascending, joined with ",".
    QString text() const;
    // As texts are stored: an empty or non-numeric part counts as 0.
    void setText(const QString& text);
    bool containsAll(const SubsetNumbers& asked) const;
    bool sharesOne(const SubsetNumbers& asked) const;
    bool operator==(const SubsetNumbers& other) const { return m_low == other.m_low && m_others == other.m_others; }

private:
    quint64 m_low = 0;
    QSet<int> m_others;
};

// The fields of a record, guarded by its lock. Texts that records of one family, foundry or vendor repeat are shared;
// those that are each record's own are not worth a place in the pool.
struct StaticFontData : public QSharedData
{
    int id = StaticFont::NewId;
    int activityType = 0;
    int hwi = 0;
    int hhe = 0;
    int hwe = 0;
    int italicAngle = 0;
    int specificWidth = 0;
    int specificHeight = 0;
    int smartChoiceAll = 0;
    int smartChoiceBody = 0;
    int smartChoiceHead = 0;
    int faceIndex = 0;
    int onlineId = 0;
    int duplicateCount = 0;
    int userRanking = 0;
    uchar serifStyle = 0;
    uchar styleField = 0;
    bool isBold = false;
    bool isItalic = false;
    bool isDeleted = false;
    bool isMonospaced = false;
    bool isSmallCaps = false;
    bool isLigature = false;
    std::array<bool, 6> privateFlags{}; // the first five are fields 104 to 108; nothing sets them
    bool isPurchased = false;
    bool isHidden = false;
    bool fileExists = true;

    QString fileName;
    QString originalFileName;
    QString fullName;
    QString postScriptName;
    QString sfntPostScriptName;
    QString fileHash;
    QString fontHash; // empty until it is first asked for
    QString latinMetricsCorrection;
    QString fullMetricsCorrection;
    QString spareTextA;
    QString spareTextB;

    SharedText familyName;
    SharedText styleName;
    SharedText menuFamilyName;
    SharedText menuStyleName;
    SharedText version;
    SharedText vendor;
    SharedText vendorUrl;
    SharedText designer;
    SharedText designerUrl;
    SharedText description;
    SharedText trademark;
    SharedText otherInfo;
    SharedText format;
    SharedText foundry;
    SharedText license;
    SharedText licenseUrl;
    SharedText otherInfo2;
    SharedText onlineSource;
    SharedText userNote;
    SharedText userDefinedFamilyName;

    SecondsText dateAdded;
    SecondsText dateLastUsed;
    SecondsText dateDownloaded;
    QDateTime dateActivated;
    QDateTime dateDeactivated;
    QDateTime dateLastSeen;

    SubsetNumbers supportedSubsets;

    // A face's paths, names and corrections are often the same; equal ones share their characters.
    void shareEqualTexts();

    int opticalSize() const;
    bool hasClass(StaticFont::Classification value) const;
    QString computedFontHash() const;
};

// The one door to a record's data for the code of this folder that works on many records.
class StaticFontAccess
{
public:
    // Calls work(const StaticFontData&) under the record's read lock.
    template <class Work>
    static auto read(const StaticFont& font, Work&& work)
    {
        QReadLocker locker(&font.m_lock);
        return work(*font.m_data.constData());
    }

    // The data of a record that no other thread knows yet.
    static StaticFontData& unshared(StaticFont& font) { return *font.m_data; }
};

// Moments as whole seconds in the range of 32 bits: 0xFFFFFFFF stands for what cannot be told.
quint32 toUnixSeconds(const QDateTime& moment);
QDateTime fromUnixSeconds(qint64 seconds);

} // namespace fms
