#include "qtService/ui/details/KrvFontDetailsTableWidget.h"

#include "qtService/database/FontCollectionInterface.h"
#include "qtService/management/FontGroup.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/details/DetailsStyle.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/FontColumnValues.h"
#include "qtService/ui/messages/OpenOutside.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Row
{
    NameRow,
    StyleRow,
    PostScriptNameRow,
    FileNameRow,
    VersionRow,
    VendorRow,
    VendorUrlRow,
    DesignerRow,
    DesignerUrlRow,
    DescriptionRow,
    TrademarkRow,
    LicenseRow,
    LicenseUrlRow,
    FormatRow,
    FoundryRow,
    DateAddedRow,
    OtherInfo2Row,
    IdRow,
    BoldRow,
    ItalicRow,
    ActiveRow,
    ItalicAngleRow,
    UserGroupsRow,
    NoteRow,
    RowCount
};

struct PlainRow
{
    int row;
    int column;
};

// The rows that read as the list's columns do.
constexpr PlainRow plainRows[] = {{NameRow, fonts::FamilyNameColumn},
                                  {StyleRow, fonts::StyleNameColumn},
                                  {PostScriptNameRow, fonts::PostScriptNameColumn},
                                  {VersionRow, fonts::VersionColumn},
                                  {VendorRow, fonts::VendorColumn},
                                  {DesignerRow, fonts::DesignerColumn},
                                  {DescriptionRow, fonts::DescriptionColumn},
                                  {TrademarkRow, fonts::TrademarkColumn},
                                  {LicenseRow, fonts::LicenseColumn},
                                  {FormatRow, fonts::FormatColumn},
                                  {FoundryRow, fonts::FoundryColumn},
                                  {DateAddedRow, fonts::DateAddedColumn},
                                  {OtherInfo2Row, fonts::ClassificationColumn},
                                  {IdRow, fonts::IdColumn},
                                  {ActiveRow, fonts::ActivityColumn},
                                  {ItalicAngleRow, fonts::ItalicAngleColumn},
                                  {NoteRow, fonts::NoteColumn}};

// Licences run to whole pages; the table shows them in rows of this height at most, the rest by tool tip and copying.
constexpr int maximumLines = 6;
constexpr int maximumToolTip = 2000;

bool isLinkRow(int row)
{
    return row == FileNameRow || row == VendorUrlRow || row == DesignerUrlRow || row == LicenseUrlRow;
}

} // namespace

KrvFontDetailsTableWidget::KrvFontDetailsTableWidget(QWidget* parent)
    : KrvAbstractFontDetailsWidget(parent)
{
    setupUi();
    connect(m_table, &QWidget::customContextMenuRequested, this, &KrvFontDetailsTableWidget::showContextMenu);
    auto* copy = new QAction(tr("Copy Text"), m_table);
    copy->setObjectName(QStringLiteral("actionCopyDetailsText"));
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(copy, &QAction::triggered, this, &KrvFontDetailsTableWidget::copySelectionText);
    m_table->addAction(copy);
}

void KrvFontDetailsTableWidget::setupUi()
{
    setObjectName(QStringLiteral("KrvFontDetailsWidget"));
    m_table = new QTableWidget(RowCount, 1, this);
    m_table->setObjectName(QStringLiteral("detailsView"));
    m_table->setAccessibleName(tr("Details"));
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setTabKeyNavigation(false);
    m_table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_table->setVerticalHeaderLabels(
        {tr("Font Name"),   tr("Style"),    tr("PostScript Name"), tr("Filename"),     tr("Version"),     tr("Vendor"),
         tr("Vendor URL"),  tr("Designer"), tr("Designer URL"),    tr("Description"),  tr("Trademark"),   tr("License"),
         tr("License URL"), tr("Format"),   tr("Foundry"),         tr("Date Added"),   tr("Other info2"), tr("Id"),
         tr("Bold"),        tr("Italic"),   tr("Active"),          tr("Italic angle"), tr("User groups"), tr("Note")});
    m_table->horizontalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->verticalHeader()->setSectionsClickable(false);
    m_table->verticalHeader()->setHighlightSections(false);
    m_table->verticalHeader()->setStyleSheet(ui::plainHeaderStyle());
    m_table->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->verticalHeader()->setMaximumSectionSize(maximumLines * fontMetrics().lineSpacing() + 8);
    for (int row = 0; row < RowCount; ++row) {
        auto* item = new QTableWidgetItem;
        item->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        m_table->setItem(row, 0, item);
        if (!isLinkRow(row))
            continue;
        auto* label = new QLabel(m_table);
        label->setTextFormat(Qt::RichText);
        label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
        label->setContextMenuPolicy(Qt::NoContextMenu); // the table's shows
        label->setContentsMargins(3, 0, 3, 0);
        connect(label, &QLabel::linkActivated, this, &KrvFontDetailsTableWidget::openLocation);
        m_table->setCellWidget(row, 0, label);
    }
    paleSelection();
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table);
}

// Links keep their colour, which is not legible on that of a full selection.
void KrvFontDetailsTableWidget::paleSelection()
{
    QPalette pale = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor full = palette().color(group, QPalette::Highlight);
        const QColor base = palette().color(group, QPalette::Base);
        const auto mixed = [](int over, int under) { return (over + 3 * under) / 4; };
        pale.setColor(
            group, QPalette::Highlight,
            QColor(mixed(full.red(), base.red()), mixed(full.green(), base.green()), mixed(full.blue(), base.blue())));
        pale.setColor(group, QPalette::HighlightedText, palette().color(group, QPalette::Text));
    }
    m_table->setPalette(pale);
}

void KrvFontDetailsTableWidget::changeEvent(QEvent* event)
{
    KrvAbstractFontDetailsWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        paleSelection();
}

void KrvFontDetailsTableWidget::setContext(const QSharedPointer<UserFontGroupList>& context)
{
    if (const auto& previous = this->context())
        previous->disconnect(this);
    if (context) {
        const auto refresh = [this] { setText(UserGroupsRow, groupNames()); };
        connect(context.data(), &FontGroupList::groupFontCountChanged, this, refresh);
        connect(context.data(), &FontGroupList::groupRenamed, this, refresh);
        connect(context.data(), &FontGroupList::groupRemoved, this, refresh);
    }
    KrvAbstractFontDetailsWidget::setContext(context);
}

void KrvFontDetailsTableWidget::setFontCollection(const QSharedPointer<FontCollectionInterface>& collection)
{
    if (const auto& previous = fontCollection())
        disconnect(previous.data(), &FontCollectionInterface::fontsChanged, this,
                   &KrvFontDetailsTableWidget::onFontsChanged);
    KrvAbstractFontDetailsWidget::setFontCollection(collection);
    if (collection)
        connect(collection.data(), &FontCollectionInterface::fontsChanged, this,
                &KrvFontDetailsTableWidget::onFontsChanged);
}

void KrvFontDetailsTableWidget::onFontsChanged(QList<int> fontIdList)
{
    if (font() && fontIdList.contains(font()->id()))
        updateView();
}

void KrvFontDetailsTableWidget::setText(int row, const QString& text)
{
    QTableWidgetItem* item = m_table->item(row, 0);
    if (item->text() == text)
        return;
    item->setText(text);
    // As rich text a font's texts would be markup.
    item->setToolTip(text.length() > 60 ? QStringLiteral("<p>%1</p>").arg(text.left(maximumToolTip).toHtmlEscaped())
                                        : QString());
}

void KrvFontDetailsTableWidget::setLink(int row, const QString& target, const QString& text)
{
    // The item beneath the label holds the text for copying; it must not show through.
    QTableWidgetItem* item = m_table->item(row, 0);
    item->setData(Qt::UserRole, text);
    item->setData(Qt::AccessibleTextRole, text);
    auto* label = static_cast<QLabel*>(m_table->cellWidget(row, 0));
    label->setText(text.isEmpty()
                       ? QString()
                       : QStringLiteral("<a href=\"%1\">%2</a>").arg(target.toHtmlEscaped(), text.toHtmlEscaped()));
    label->setFocusPolicy(text.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
    label->setAccessibleName(m_table->verticalHeaderItem(row)->text());
    label->setAccessibleDescription(text);
}

void KrvFontDetailsTableWidget::updateView()
{
    const StaticFontPtr font = this->font();
    for (const PlainRow& plain : plainRows)
        setText(plain.row, font ? fonts::columnValue(font, plain.column).toString() : QString());
    const auto yesOrNo = [&font](bool value) { return font ? (value ? tr("yes") : tr("no")) : QString(); };
    setText(BoldRow, yesOrNo(font && font->isBold()));
    setText(ItalicRow, yesOrNo(font && font->isItalic()));
    setText(UserGroupsRow, groupNames());
    const QString fileName = font ? font->fileName() : QString();
    setLink(FileNameRow, fileName, QDir::toNativeSeparators(fileName));
    const auto setUrl = [this](int row, const QUrl& url) {
        setLink(row, QString::fromLatin1(url.toEncoded()), url.toDisplayString());
    };
    setUrl(VendorUrlRow, font ? font->vendorUrl() : QUrl());
    setUrl(DesignerUrlRow, font ? font->designerUrl() : QUrl());
    setUrl(LicenseUrlRow, font ? font->licenseUrl() : QUrl());
}

QString KrvFontDetailsTableWidget::groupNames() const
{
    QStringList names;
    if (font() && context()) {
        const QList<int> ids = context()->groupIdList();
        for (const int id : ids) {
            const auto group = context()->group(id);
            if (group && group->containsFont(font()->id()))
                names.append(group->name());
        }
    }
    return names.join(QStringLiteral(", "));
}

void KrvFontDetailsTableWidget::openLocation(QString location)
{
    if (font() && location == font()->fileName()) {
        ui::showFile(location);
        return;
    }
    // The addresses stand in the font, and a font is a stranger's file: what they open is the web or a letter, never a
    // local file or a program behind some scheme.
    const QUrl url = QUrl::fromUserInput(location);
    const QString scheme = url.scheme();
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https") || scheme == QLatin1String("mailto"))
        ui::openAddress(url);
}

void KrvFontDetailsTableWidget::copySelectionText()
{
    QList<int> rows;
    const QModelIndexList selected = m_table->selectionModel()->selectedIndexes();
    for (const QModelIndex& index : selected)
        rows.append(index.row());
    if (rows.isEmpty() && m_table->currentRow() >= 0)
        rows.append(m_table->currentRow());
    std::sort(rows.begin(), rows.end());
    QStringList texts;
    for (const int row : qAsConst(rows)) {
        const QTableWidgetItem* item = m_table->item(row, 0);
        texts.append(isLinkRow(row) ? item->data(Qt::UserRole).toString() : item->text());
    }
    if (!texts.isEmpty())
        QGuiApplication::clipboard()->setText(texts.join(QLatin1Char('\n')));
}

void KrvFontDetailsTableWidget::showContextMenu(QPoint pos)
{
    // Over a link the click does not reach the table's selection.
    const QModelIndex index = m_table->indexAt(pos);
    if (index.isValid() && !m_table->selectionModel()->isSelected(index))
        m_table->setCurrentIndex(index);
    QMenu menu(this);
    menu.addActions(m_table->actions());
    menu.exec(m_table->viewport()->mapToGlobal(pos));
}
