#pragma once

#include <QList>
#include <QObject>
#include <QSharedPointer>

class FindMathingFontsCommand;
class MatchingCriteria;
namespace fms {
class StaticFont;
}
using StaticFontPtr = QSharedPointer<fms::StaticFont>;

// A live set of fonts: the repository, which holds them all, and every group, which follows another collection.
//
// The reads may be called from any thread; each one sees the collection before or after a change, never in between.
// findMatchingFonts() and findMatchingFontIds() block the caller until a pool thread has done the search (or do it on
// the caller's own thread when the pool is busy). Matches come in the collection's order.
//
// The change signals are emitted with no lock held, after the change is visible, by the thread that made it. Receivers
// bear ids they do not know and ids they hear of twice.
class FontCollectionInterface : public QObject
{
    Q_OBJECT

public:
    explicit FontCollectionInterface(QObject* parent = nullptr);
    ~FontCollectionInterface() override;

    virtual QList<StaticFontPtr> fonts() const = 0;
    // Null when the font is no member.
    virtual StaticFontPtr font(int fontId) const = 0;
    virtual QList<StaticFontPtr> findMatchingFonts(const QSharedPointer<MatchingCriteria>& criteria) const = 0;
    // Not started. The command searches the members as they are when it is created.
    virtual QSharedPointer<FindMathingFontsCommand>
    createFindMathingFontsCommand(const QSharedPointer<MatchingCriteria>& criteria, bool idsOnly) const = 0;
    virtual QList<int> findMatchingFontIds(const QSharedPointer<MatchingCriteria>& criteria) const = 0;
    virtual QList<int> fontIdList() const = 0;
    virtual bool containsFont(const StaticFontPtr& font) const = 0;
    virtual bool containsFont(int fontId) const = 0;
    virtual int fontCount() const = 0;
    virtual bool hasFonts() const = 0;

signals:
    void fontsAdded(const QList<int>& fontIdList);
    void fontsRemoved(const QList<int>& fontIdList);
    void fontsChanged(const QList<int>& fontIdList);
    void fontCountChanged();
};
