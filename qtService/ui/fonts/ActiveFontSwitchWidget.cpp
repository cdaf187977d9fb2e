#include "qtService/ui/fonts/ActiveFontSwitchWidget.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/ui/widgets/QProgressIndicator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

namespace {

enum Page
{
    ButtonPage,
    WaitPage,
    ResultPage
};

// Long enough to read a refusal.
constexpr int resultShownMs = 4000;

} // namespace

ActiveFontSwitchWidget::ActiveFontSwitchWidget(const QSharedPointer<FontManagementService>& service, QWidget* parent)
    : QWidget(parent)
    , m_service(service)
{
    setupUi();
    connect(m_button, &QPushButton::clicked, this, &ActiveFontSwitchWidget::onActivateClicked);
    m_resultShown.setSingleShot(true);
    m_resultShown.setInterval(resultShownMs);
    connect(&m_resultShown, &QTimer::timeout, this, &ActiveFontSwitchWidget::showButton);
    connect(m_service.data(), &FontManagementService::started, this, &ActiveFontSwitchWidget::followLibrary);
    followLibrary();
    showButton();
}

void ActiveFontSwitchWidget::followLibrary()
{
    if (const KrvFontRepositoryPtr repository = m_service->repository())
        connect(repository.data(), &FontCollectionInterface::fontsChanged, this,
                &ActiveFontSwitchWidget::onFontsChanged, Qt::UniqueConnection);
}

void ActiveFontSwitchWidget::onFontsChanged(const QList<int>& fontIdList)
{
    if (m_font && m_pages->currentIndex() == ButtonPage && fontIdList.contains(m_font->id()))
        showButton();
}

void ActiveFontSwitchWidget::setupUi()
{
    setObjectName(QStringLiteral("ActiveFontSwitchWidget"));
    auto* layout = new QHBoxLayout(this);
    layout->setObjectName(QStringLiteral("horizontalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    m_pages = new QStackedWidget(this);
    m_pages->setObjectName(QStringLiteral("stackedWidget"));
    layout->addWidget(m_pages);
    m_button = new QPushButton;
    m_button->setObjectName(QStringLiteral("btnActivate"));
    m_waiting = new QProgressIndicator;
    m_waiting->setObjectName(QStringLiteral("waitIndicator"));
    m_result = new QLabel;
    m_result->setObjectName(QStringLiteral("lblResult"));
    const QList<QWidget*> contents{m_button, m_waiting, m_result};
    for (QWidget* content : contents) {
        auto* page = new QWidget;
        const int number = m_pages->addWidget(page) + 1;
        page->setObjectName(number == 1 ? QStringLiteral("page") : QStringLiteral("page_%1").arg(number));
        auto* row = new QHBoxLayout(page);
        row->setObjectName(QStringLiteral("horizontalLayout_%1").arg(number + 1));
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(content);
    }
}

void ActiveFontSwitchWidget::setFont(const StaticFontPtr& font)
{
    if (m_command)
        m_command->disconnect(this);
    m_command.clear();
    m_font = font;
    m_hadFocus = false;
    showButton();
}

void ActiveFontSwitchWidget::showButton()
{
    const bool active = m_font && m_font->activityType() > kerval::systemfm::Inactive;
    m_button->setText(active ? tr("Deactivate") : tr("Activate"));
    m_button->setEnabled(!m_font.isNull());
    m_resultShown.stop();
    m_waiting->stopAnimation();
    m_pages->setCurrentIndex(ButtonPage);
    // The keyboard was here and had nowhere to go meanwhile.
    if (m_hadFocus && (!window()->focusWidget() || isAncestorOf(window()->focusWidget())))
        m_button->setFocus();
    m_hadFocus = false;
}

void ActiveFontSwitchWidget::onActivateClicked()
{
    const bool active = m_font->activityType() > kerval::systemfm::Inactive;
    m_command = m_service->setFontActivityType({m_font->id()}, active ? kerval::systemfm::Inactive
                                                                      : kerval::systemfm::PermanentlyActive);
    if (!m_command)
        return;
    m_hadFocus = m_button->hasFocus();
    connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this,
            active ? &ActiveFontSwitchWidget::onDeactivationStateChanged
                   : &ActiveFontSwitchWidget::onActivationStateChanged);
    m_pages->setCurrentIndex(WaitPage);
    m_waiting->startAnimation();
    m_command->start();
}

void ActiveFontSwitchWidget::onDeactivationStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state == AbstractAsynchronousCommand::Finished)
        showResult(tr("Deactivated"));
    else if (state != AbstractAsynchronousCommand::Running)
        showButton();
}

void ActiveFontSwitchWidget::onActivationStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state == AbstractAsynchronousCommand::Finished)
        showResult(tr("Activated"));
    else if (state != AbstractAsynchronousCommand::Running)
        showButton();
}

void ActiveFontSwitchWidget::showResult(const QString& success)
{
    m_waiting->stopAnimation();
    switch (m_command->results().value(m_font->id()).error) {
    case fms::NoError:
        m_result->setText(success);
        break;
    case fms::SystemFontProtected:
        m_result->setText(tr("A system font stays as it is"));
        break;
    case fms::ActivationConflict:
        m_result->setText(tr("Another font of this name is active"));
        break;
    default:
        m_result->setText(tr("The system refused"));
        break;
    }
    m_pages->setCurrentIndex(ResultPage);
    m_resultShown.start();
}
