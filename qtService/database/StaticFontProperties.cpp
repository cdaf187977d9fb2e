// Getters and setters of the plain properties: a lock and an assignment each, so the table below says all there is to
// say about them. What needs more is in StaticFont.cpp.
#include "qtService/database/StaticFont.h"

#include "qtService/database/StaticFontData.h"

namespace fms {

// clang-format off
#define ACCESSORS(Type, Argument, name, setName, readExpression, writeStatement)                                       \
    Type StaticFont::name() const                                                                                      \
    {                                                                                                                  \
        QReadLocker locker(&m_lock);                                                                                   \
        const StaticFontData& data = *m_data.constData();                                                              \
        return readExpression;                                                                                         \
    }                                                                                                                  \
    void StaticFont::setName(Argument value)                                                                           \
    {                                                                                                                  \
        QWriteLocker locker(&m_lock);                                                                                  \
        StaticFontData& data = *m_data;                                                                                \
        writeStatement;                                                                                                \
    }

#define SCALAR(Type, name, setName) ACCESSORS(Type, Type, name, setName, data.name, data.name = value)
#define OBJECT(Type, name, setName) ACCESSORS(Type, const Type&, name, setName, data.name, data.name = value)
#define SHARED_TEXT(name, setName)                                                                                     \
    ACCESSORS(QString, const QString&, name, setName, data.name.text(), data.name = SharedText(value))
#define SHARED_URL(name, setName)                                                                                      \
    ACCESSORS(QUrl, const QUrl&, name, setName, QUrl(data.name.text()), data.name = SharedText(value.toString()))
#define SECONDS(name, setName)                                                                                         \
    ACCESSORS(QDateTime, const QDateTime&, name, setName, data.name.moment(), data.name.set(value))
#define NUMBERS(name, setName)                                                                                         \
    ACCESSORS(QSet<int>, const QSet<int>&, name, setName, data.name.numbers(), data.name.set(value))

SCALAR(int, id, setId)
OBJECT(QString, fileName, setFileName)
OBJECT(QString, originalFileName, setOriginalFileName)
SHARED_TEXT(familyName, setFamilyName)
SHARED_TEXT(styleName, setStyleName)
SHARED_TEXT(menuFamilyName, setMenuFamilyName)
SHARED_TEXT(menuStyleName, setMenuStyleName)
OBJECT(QString, fullName, setFullName)
OBJECT(QString, postScriptName, setPostScriptName)
OBJECT(QString, sfntPostScriptName, setSfntPostScriptName)
SCALAR(bool, isBold, setIsBold)
SCALAR(bool, isItalic, setIsItalic)
SCALAR(bool, isDeleted, setIsDeleted)
SCALAR(bool, isMonospaced, setIsMonospaced)
SCALAR(bool, isSmallCaps, setIsSmallCaps)
SCALAR(bool, isLigature, setIsLigature)
SCALAR(uchar, serifStyle, setSerifStyle)
SHARED_TEXT(version, setVersion)
SHARED_TEXT(vendor, setVendor)
SHARED_URL(vendorUrl, setVendorUrl)
SHARED_TEXT(designer, setDesigner)
SHARED_URL(designerUrl, setDesignerUrl)
SHARED_TEXT(description, setDescription)
SHARED_TEXT(trademark, setTrademark)
SHARED_TEXT(otherInfo, setOtherInfo)
SHARED_TEXT(format, setFormat)
SHARED_TEXT(foundry, setFoundry)
SECONDS(dateAdded, setDateAdded)
SECONDS(dateLastUsed, setDateLastUsed)
SECONDS(dateDownloaded, setDateDownloaded)
SHARED_TEXT(license, setLicense)
SHARED_URL(licenseUrl, setLicenseUrl)
SHARED_TEXT(otherInfo2, setOtherInfo2)
SCALAR(uchar, styleField, setStyleField)
SCALAR(int, hwi, setHwi)
SCALAR(int, hhe, setHhe)
SCALAR(int, hwe, setHwe)
NUMBERS(supportedSubsets, setSupportedSubsets)
SCALAR(int, italicAngle, setItalicAngle)
SCALAR(int, specificWidth, setSpecificWidth)
SCALAR(int, specificHeight, setSpecificHeight)
OBJECT(QString, fileHash, setFileHash)
OBJECT(QString, latinMetricsCorrection, setLatinMetricsCorrection)
OBJECT(QString, fullMetricsCorrection, setFullMetricsCorrection)
SCALAR(int, smartChoiceAll, setSmartChoiceAll)
SCALAR(int, smartChoiceBody, setSmartChoiceBody)
SCALAR(int, smartChoiceHead, setSmartChoiceHead)
SCALAR(int, faceIndex, setFaceIndex)
OBJECT(QDateTime, dateActivated, setDateActivated)
OBJECT(QDateTime, dateDeactivated, setDateDeactivated)
OBJECT(QDateTime, dateLastSeen, setDateLastSeen)
SCALAR(int, onlineId, setOnlineId)
SHARED_TEXT(onlineSource, setOnlineSource)
SCALAR(bool, isPurchased, setIsPurchased)
SCALAR(int, duplicateCount, setDuplicateCount)
SHARED_TEXT(userNote, setUserNote)
SCALAR(bool, isHidden, setIsHidden)
SCALAR(bool, fileExists, setFileExists)
SCALAR(int, userRanking, setUserRanking)
SHARED_TEXT(userDefinedFamilyName, setUserDefinedFamilyName)

#undef ACCESSORS
#undef SCALAR
#undef OBJECT
#undef SHARED_TEXT
#undef SHARED_URL
#undef SECONDS
#undef NUMBERS
// clang-format on

} // namespace fms
