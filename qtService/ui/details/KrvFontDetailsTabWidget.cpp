#include "qtService/ui/details/KrvFontDetailsTabWidget.h"

#include "qtService/ui/details/KrvCharacterMapWidget.h"
#include "qtService/ui/details/KrvDelayedUpdateFontDetailsWidget.h"
#include "qtService/ui/details/KrvFontDetailsTableWidget.h"
#include "qtService/ui/details/KrvUpdateWhenVisibleFontDetailsWidget.h"
#include "qtService/ui/details/KrvWaterfallWidget.h"
#include "qtService/ui/fonts/ActiveFontSwitchWidget.h"

#include <QTabWidget>

namespace {

constexpr int selectionRestMs = 500;

KrvAbstractFontDetailsWidget* delayed(KrvAbstractFontDetailsWidget* content)
{
    return new KrvDelayedUpdateFontDetailsWidget(new KrvUpdateWhenVisibleFontDetailsWidget(content), selectionRestMs);
}

} // namespace

KrvFontDetailsTabWidget::KrvFontDetailsTabWidget(QWidget* parent)
    : KrvAbstractFontDetailsWidget(parent)
    , m_tabs(new QTabWidget(this))
    , m_characterMap(new KrvCharacterMapWidget)
    , m_waterfall(new KrvWaterfallWidget)
{
    m_tabs->setObjectName(QStringLiteral("tabWidget"));
    m_tabs->setAccessibleName(tr("Font Details"));
    m_tabs->setDocumentMode(true);
    wrap(m_tabs);
    m_contents = {delayed(m_characterMap), delayed(m_waterfall),
                  new KrvUpdateWhenVisibleFontDetailsWidget(new KrvFontDetailsTableWidget)};
    m_tabs->addTab(m_contents.at(0), tr("Character Map"));
    m_tabs->addTab(m_contents.at(1), tr("Waterfall"));
    m_tabs->addTab(m_contents.at(2), tr("Details"));
}

void KrvFontDetailsTabWidget::setService(const QSharedPointer<FontManagementService>& service)
{
    if (m_switch)
        return;
    m_switch = new ActiveFontSwitchWidget(service, m_tabs);
    m_switch->setContentsMargins(8, 0, 8, 3);
    m_tabs->setCornerWidget(m_switch, Qt::TopRightCorner);
    m_switch->setFont(font());
    m_switch->show();
}

void KrvFontDetailsTabWidget::setContext(const QSharedPointer<UserFontGroupList>& context)
{
    storeContext(context);
    for (KrvAbstractFontDetailsWidget* content : qAsConst(m_contents))
        content->setContext(context);
}

void KrvFontDetailsTabWidget::setFont(const StaticFontPtr& font)
{
    // The list announces its current font again with every change of the selection; the delay counts from a new one.
    if (font == this->font())
        return;
    storeFont(font);
    updateView();
}

void KrvFontDetailsTabWidget::setFontCollection(const QSharedPointer<FontCollectionInterface>& collection)
{
    storeFontCollection(collection);
    for (KrvAbstractFontDetailsWidget* content : qAsConst(m_contents))
        content->setFontCollection(collection);
}

void KrvFontDetailsTabWidget::updateView()
{
    if (m_switch)
        m_switch->setFont(font());
    for (KrvAbstractFontDetailsWidget* content : qAsConst(m_contents))
        content->setFont(font());
}

void KrvFontDetailsTabWidget::setPreviewText(QString text)
{
    if (!text.isEmpty())
        m_waterfall->setPreviewText(text);
}

void KrvFontDetailsTabWidget::setPreviewSize(int size)
{
    m_waterfall->showSize(size);
}
