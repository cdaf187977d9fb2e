#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QReadWriteLock>
#include <QSet>
#include <QSharedDataPointer>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace fms {

class StaticFontAccess;
struct StaticFontData;

// The record of one catalogued face: what the font says, what the user says about it, and whether it is active.
// Records are filled by a factory before they are shared; afterwards any thread may read and write single fields, each
// guarded by the record's own lock. No lock spans two fields. Texts that repeat between records (vendor, licence ...)
// are held once per process, so that a catalogue of 100,000 faces stays small.
class StaticFont : public QObject
{
    Q_OBJECT

    Q_PROPERTY(int id READ id WRITE setId)
    Q_PROPERTY(QString fileName READ fileName WRITE setFileName)
    Q_PROPERTY(QString originalFileName READ originalFileName WRITE setOriginalFileName)
    Q_PROPERTY(int activityType READ activityType WRITE setActivityType NOTIFY activityTypeChanged)
    Q_PROPERTY(QString familyName READ familyName WRITE setFamilyName)
    Q_PROPERTY(QString styleName READ styleName WRITE setStyleName)
    Q_PROPERTY(QString menuFamilyName READ menuFamilyName WRITE setMenuFamilyName)
    Q_PROPERTY(QString menuStyleName READ menuStyleName WRITE setMenuStyleName)
    Q_PROPERTY(QString fullName READ fullName WRITE setFullName)
    Q_PROPERTY(QString postScriptName READ postScriptName WRITE setPostScriptName)
    Q_PROPERTY(QString sfntPostScriptName READ sfntPostScriptName WRITE setSfntPostScriptName)
    Q_PROPERTY(bool isBold READ isBold WRITE setIsBold)
    Q_PROPERTY(bool isItalic READ isItalic WRITE setIsItalic)
    Q_PROPERTY(bool isDeleted READ isDeleted WRITE setIsDeleted)
    Q_PROPERTY(bool isMonospaced READ isMonospaced WRITE setIsMonospaced)
    Q_PROPERTY(bool isSmallCaps READ isSmallCaps WRITE setIsSmallCaps)
    Q_PROPERTY(bool isLigature READ isLigature WRITE setIsLigature)
    Q_PROPERTY(uchar serifStyle READ serifStyle WRITE setSerifStyle)
    Q_PROPERTY(QString version READ version WRITE setVersion)
    Q_PROPERTY(QString vendor READ vendor WRITE setVendor)
    Q_PROPERTY(QUrl vendorUrl READ vendorUrl WRITE setVendorUrl)
    Q_PROPERTY(QString designer READ designer WRITE setDesigner)
    Q_PROPERTY(QUrl designerUrl READ designerUrl WRITE setDesignerUrl)
    Q_PROPERTY(QString description READ description WRITE setDescription)
    Q_PROPERTY(QString trademark READ trademark WRITE setTrademark)
    Q_PROPERTY(QString otherInfo READ otherInfo WRITE setOtherInfo)
    Q_PROPERTY(QString format READ format WRITE setFormat)
    Q_PROPERTY(QString foundry READ foundry WRITE setFoundry)
    Q_PROPERTY(QDateTime dateAdded READ dateAdded WRITE setDateAdded)
    Q_PROPERTY(QDateTime dateLastUsed READ dateLastUsed WRITE setDateLastUsed)
    Q_PROPERTY(QDateTime dateDownloaded READ dateDownloaded WRITE setDateDownloaded)
    Q_PROPERTY(QString license READ license WRITE setLicense)
    Q_PROPERTY(QUrl licenseUrl READ licenseUrl WRITE setLicenseUrl)
    Q_PROPERTY(QString otherInfo2 READ otherInfo2 WRITE setOtherInfo2)
    Q_PROPERTY(uchar styleField READ styleField WRITE setStyleField)
    Q_PROPERTY(int hwi READ hwi WRITE setHwi)
    Q_PROPERTY(int hhe READ hhe WRITE setHhe)
    Q_PROPERTY(int hwe READ hwe WRITE setHwe)
    Q_PROPERTY(QSet<int> supportedSubsets READ supportedSubsets WRITE setSupportedSubsets)
    Q_PROPERTY(int italicAngle READ italicAngle WRITE setItalicAngle)
    Q_PROPERTY(int specificWidth READ specificWidth WRITE setSpecificWidth)
    Q_PROPERTY(int specificHeight READ specificHeight WRITE setSpecificHeight)
    Q_PROPERTY(QString fileHash READ fileHash WRITE setFileHash)
    Q_PROPERTY(QString fontHash READ fontHash)
    Q_PROPERTY(QString latinMetricsCorrection READ latinMetricsCorrection WRITE setLatinMetricsCorrection)
    Q_PROPERTY(QString fullMetricsCorrection READ fullMetricsCorrection WRITE setFullMetricsCorrection)
    Q_PROPERTY(int smartChoiceAll READ smartChoiceAll WRITE setSmartChoiceAll)
    Q_PROPERTY(int smartChoiceBody READ smartChoiceBody WRITE setSmartChoiceBody)
    Q_PROPERTY(int smartChoiceHead READ smartChoiceHead WRITE setSmartChoiceHead)
    Q_PROPERTY(int faceIndex READ faceIndex WRITE setFaceIndex)
    Q_PROPERTY(QDateTime dateActivated READ dateActivated WRITE setDateActivated)
    Q_PROPERTY(QDateTime dateDeactivated READ dateDeactivated WRITE setDateDeactivated)
    Q_PROPERTY(QDateTime dateLastSeen READ dateLastSeen WRITE setDateLastSeen)
    Q_PROPERTY(int onlineId READ onlineId WRITE setOnlineId)
    Q_PROPERTY(QString onlineSource READ onlineSource WRITE setOnlineSource)
    Q_PROPERTY(bool isPurchased READ isPurchased WRITE setIsPurchased)
    Q_PROPERTY(int duplicateCount READ duplicateCount WRITE setDuplicateCount)
    Q_PROPERTY(QString userNote READ userNote WRITE setUserNote)
    Q_PROPERTY(bool isHidden READ isHidden WRITE setIsHidden)
    Q_PROPERTY(bool isSerif READ isSerif)
    Q_PROPERTY(bool isSymbol READ isSymbol)
    Q_PROPERTY(bool isMonospacedClass READ isMonospacedClass)
    Q_PROPERTY(int opticalSize READ opticalSize)
    Q_PROPERTY(bool fileExists READ fileExists WRITE setFileExists)
    Q_PROPERTY(int userRanking READ userRanking WRITE setUserRanking)
    Q_PROPERTY(QString userDefinedFamilyName READ userDefinedFamilyName WRITE setUserDefinedFamilyName)

public:
    // Fields that can be read and written as text, see stringField().
    enum StringField : int
    {
        FamilyName = 0,
        StyleName = 1,
        PostScriptName = 2,
        FileName = 3,
        OriginalFileName = 4,
        Version = 5,
        Vendor = 6,
        VendorUrl = 7,
        Designer = 8,
        DesignerUrl = 9,
        Description = 10,
        Trademark = 11,
        OtherInfo = 12,
        License = 13,
        LicenseUrl = 14,
        Format = 15,
        Foundry = 16,
        DateAdded = 17,
        DateLastUsed = 18,
        DateDownloaded = 19,
        OtherInfo2 = 20,
        SupportedSubsets = 21,
        SpareTextA = 22,
        FileHash = 23,
        SfntPostScriptName = 24,
        Unused = 25,
        LatinMetricsCorrection = 26,
        FullMetricsCorrection = 27,
        SpareTextB = 28,
        DateActivated = 29,
        DateDeactivated = 30,
        DateLastSeen = 31,
        MenuFamilyName = 32,
        MenuStyleName = 33,
        FullName = 34,
        OnlineSource = 35,
    };
    Q_ENUM(StringField)

    enum Classification : int
    {
        NoClassification = 0,
        Blackletter = 1,
        Handwriting = 2,
        Symbol = 3,
        Modern = 4,
        Typewriter = 5,
        Headline = 6,
        Comic = 7,
        Classic = 8,
        Serif = 9,
        Monospace = 10,
        Smallcaps = 11,
        UncompleteLower = 12,
        UncompleteUpper = 13,
        Boxed = 14,
        HatedFonts = 15
    };
    Q_ENUM(Classification)

    enum ActivityType : int
    {
        Inactive = 0,
        TemporarilyActive = 1,
        PermanentlyActive = 2
    };

    // The id of a record that is not stored yet.
    static constexpr int NewId = -2;

    StaticFont();
    ~StaticFont() override;

    // The properties that listings over the local interface show, in their order. "onlinseSource" names no property, so
    // the online source is never shown there.
    static const QStringList& exportedProperties();

    int id() const;
    QString fileName() const;
    QString originalFileName() const;
    int activityType() const;
    QString familyName() const;
    QString styleName() const;
    QString menuFamilyName() const;
    QString menuStyleName() const;
    QString fullName() const;
    QString postScriptName() const;
    QString sfntPostScriptName() const;
    bool isBold() const;
    bool isItalic() const;
    bool isDeleted() const;
    bool isMonospaced() const;
    bool isSmallCaps() const;
    bool isLigature() const;
    uchar serifStyle() const;
    QString version() const;
    QString vendor() const;
    QUrl vendorUrl() const;
    QString designer() const;
    QUrl designerUrl() const;
    QString description() const;
    QString trademark() const;
    QString otherInfo() const;
    QString format() const;
    QString foundry() const;
    QDateTime dateAdded() const;
    QDateTime dateLastUsed() const;
    QDateTime dateDownloaded() const;
    QString license() const;
    QUrl licenseUrl() const;
    QString otherInfo2() const;
    uchar styleField() const;
    int hwi() const;
    int hhe() const;
    int hwe() const;
    QSet<int> supportedSubsets() const;
    int italicAngle() const;
    int specificWidth() const;
    int specificHeight() const;
    QString fileHash() const;
    QString fontHash() const;
    QString latinMetricsCorrection() const;
    QString fullMetricsCorrection() const;
    int smartChoiceAll() const;
    int smartChoiceBody() const;
    int smartChoiceHead() const;
    int faceIndex() const;
    QDateTime dateActivated() const;
    QDateTime dateDeactivated() const;
    QDateTime dateLastSeen() const;
    int onlineId() const;
    QString onlineSource() const;
    bool isPurchased() const;
    int duplicateCount() const;
    QString userNote() const;
    bool isHidden() const;
    bool isSerif() const;
    bool isSymbol() const;
    bool isMonospacedClass() const;
    int opticalSize() const;
    bool fileExists() const;
    int userRanking() const;
    QString userDefinedFamilyName() const;

    // Assignments announce nothing, but setActivityType() says so when the value changes.
    void setId(int id);
    void setFileName(const QString& fileName);
    void setOriginalFileName(const QString& originalFileName);
    void setActivityType(int activityType);
    void setFamilyName(const QString& familyName);
    void setStyleName(const QString& styleName);
    void setMenuFamilyName(const QString& menuFamilyName);
    void setMenuStyleName(const QString& menuStyleName);
    void setFullName(const QString& fullName);
    void setPostScriptName(const QString& postScriptName);
    void setSfntPostScriptName(const QString& sfntPostScriptName);
    void setIsBold(bool isBold);
    void setIsItalic(bool isItalic);
    void setIsDeleted(bool isDeleted);
    void setIsMonospaced(bool isMonospaced);
    void setIsSmallCaps(bool isSmallCaps);
    void setIsLigature(bool isLigature);
    void setSerifStyle(uchar serifStyle);
    void setVersion(const QString& version);
    void setVendor(const QString& vendor);
    void setVendorUrl(const QUrl& vendorUrl);
    void setDesigner(const QString& designer);
    void setDesignerUrl(const QUrl& designerUrl);
    void setDescription(const QString& description);
    void setTrademark(const QString& trademark);
    void setOtherInfo(const QString& otherInfo);
    void setFormat(const QString& format);
    void setFoundry(const QString& foundry);
    void setDateAdded(const QDateTime& dateAdded);
    void setDateLastUsed(const QDateTime& dateLastUsed);
    void setDateDownloaded(const QDateTime& dateDownloaded);
    void setLicense(const QString& license);
    void setLicenseUrl(const QUrl& licenseUrl);
    void setOtherInfo2(const QString& otherInfo2);
    void setStyleField(uchar styleField);
    void setHwi(int hwi);
    void setHhe(int hhe);
    void setHwe(int hwe);
    void setSupportedSubsets(const QSet<int>& supportedSubsets);
    void setItalicAngle(int italicAngle);
    void setSpecificWidth(int specificWidth);
    void setSpecificHeight(int specificHeight);
    void setFileHash(const QString& fileHash);
    void setLatinMetricsCorrection(const QString& latinMetricsCorrection);
    void setFullMetricsCorrection(const QString& fullMetricsCorrection);
    void setSmartChoiceAll(int smartChoiceAll);
    void setSmartChoiceBody(int smartChoiceBody);
    void setSmartChoiceHead(int smartChoiceHead);
    void setFaceIndex(int faceIndex);
    void setDateActivated(const QDateTime& dateActivated);
    void setDateDeactivated(const QDateTime& dateDeactivated);
    void setDateLastSeen(const QDateTime& dateLastSeen);
    void setOnlineId(int onlineId);
    void setOnlineSource(const QString& onlineSource);
    void setIsPurchased(bool isPurchased);
    void setDuplicateCount(int duplicateCount);
    void setUserNote(const QString& userNote);
    void setIsHidden(bool isHidden);
    void setFileExists(bool fileExists);
    void setUserRanking(int userRanking);
    void setUserDefinedFamilyName(const QString& userDefinedFamilyName);

    // Dates 17 to 19 are decimal Unix seconds, 29 to 31 Qt::TextDate, the subsets decimal numbers joined with ",".
    // A field that does not exist reads empty and ignores writes.
    QString stringField(StringField field) const;
    void setStringField(StringField field, const QString& text);

    // Any field by number, as listings address them: below 36 as stringField(), from 100 the numbered fields.
    // isNumeric, when given, says whether the field is a number that may be sorted as one.
    QString fieldText(int field, bool* isNumeric = nullptr) const;

signals:
    void activityTypeChanged();

private:
    friend class StaticFontAccess;

    mutable QReadWriteLock m_lock;
    mutable QSharedDataPointer<StaticFontData> m_data;
};

} // namespace fms

using StaticFontPtr = QSharedPointer<fms::StaticFont>;

Q_DECLARE_METATYPE(StaticFontPtr)
