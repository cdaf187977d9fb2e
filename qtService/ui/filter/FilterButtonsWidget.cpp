#include "qtService/ui/filter/FilterButtonsWidget.h"

#include "qtService/ui/filter/KrvFilterButtonGroup.h"
#include "qtService/ui/widgets/FlatButton.h"

#include <QHBoxLayout>

FilterButtonsWidget::FilterButtonsWidget(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("FilterButtonsWidget"));
    setWindowTitle(tr("Form"));
    resize(451, 32);
    auto* group = new KrvFilterButtonGroup(this);
    auto* pages = new QHBoxLayout;
    pages->setObjectName(QStringLiteral("horizontalLayout_2"));
    struct Page
    {
        const char* objectName;
        QString text;
    };
    const Page buttons[] = {
        {"btnAttributes", tr("Attributes")}, {"btnFitlers", tr("Filters")}, {"btnText", tr("Text")}};
    for (const Page& page : buttons) {
        auto* button = new FlatButton(QIcon(), page.text, this);
        button->setObjectName(QLatin1String(page.objectName));
        button->setCheckable(true);
        group->addButton(button, m_pages.size());
        m_pages.append(button);
        pages->addWidget(button);
    }
    m_reset = new FlatButton(QIcon(), tr("Reset Filters"), this);
    m_reset->setObjectName(QStringLiteral("btnResetFilters"));
    m_reset->hide();
    auto* right = new QHBoxLayout;
    right->setObjectName(QStringLiteral("horizontalLayout_3"));
    right->addWidget(m_reset);

    auto* layout = new QHBoxLayout(this);
    layout->setObjectName(QStringLiteral("horizontalLayout"));
    layout->setSpacing(10);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addLayout(pages);
    layout->addSpacing(40);
    layout->addLayout(right);
    layout->addStretch();
    connect(group, &KrvFilterButtonGroup::allButtonsUnchecked, this, &FilterButtonsWidget::allButtonsUnchecked);
    connect(group, &KrvFilterButtonGroup::buttonToggled, this, &FilterButtonsWidget::buttonToggled);
    connect(m_reset, &QPushButton::clicked, this, &FilterButtonsWidget::filterResetPressed);
}

void FilterButtonsWidget::setResetButtonVisible(bool visible)
{
    m_reset->setVisible(visible);
}

void FilterButtonsWidget::setCurrentPage(int page)
{
    for (int i = 0; i < m_pages.size(); ++i)
        m_pages.at(i)->setChecked(i == page);
}

int FilterButtonsWidget::currentPage() const
{
    for (int i = 0; i < m_pages.size(); ++i) {
        if (m_pages.at(i)->isChecked())
            return i;
    }
    return -1;
}
