#pragma once

#include "qtService/database/StaticFont.h"

#include <QSharedPointer>
#include <QWidget>

class FontCollectionInterface;
class UserFontGroupList;

// What shows details of one font. It is told of three things, each of which may be null: the user's groups (the
// context, given once), the font, and the collection that the list shows. A change of the first two is followed by
// updateView(); what does it at once and what puts it off is up to the class. Main thread.
class KrvAbstractFontDetailsWidget : public QWidget
{
    Q_OBJECT

public:
    explicit KrvAbstractFontDetailsWidget(QWidget* parent = nullptr);
    ~KrvAbstractFontDetailsWidget() override;

    virtual void setContext(const QSharedPointer<UserFontGroupList>& context);
    virtual void setFont(const StaticFontPtr& font);
    virtual void setFontCollection(const QSharedPointer<FontCollectionInterface>& collection);

    const QSharedPointer<UserFontGroupList>& context() const { return m_context; }
    const StaticFontPtr& font() const { return m_font; }
    const QSharedPointer<FontCollectionInterface>& fontCollection() const { return m_collection; }

protected slots:
    virtual void updateView() = 0;

protected:
    // For wrappers: keeps the values without an update.
    void storeContext(const QSharedPointer<UserFontGroupList>& context) { m_context = context; }
    void storeFont(const StaticFontPtr& font) { m_font = font; }
    void storeFontCollection(const QSharedPointer<FontCollectionInterface>& collection) { m_collection = collection; }
    // The wrapped widget fills the wrapper.
    void wrap(QWidget* inner);

private:
    QSharedPointer<UserFontGroupList> m_context;
    StaticFontPtr m_font;
    QSharedPointer<FontCollectionInterface> m_collection;
};
