#include "Karto/Settings/Views/GeneralSectionView.h"

#include "Karto/Settings/Views/Look.h"

#include <QEvent>
#include <QPointer>
#include <QVBoxLayout>

namespace karto {

namespace {

constexpr auto startAtLogin = "Start at Login";
constexpr auto checkForUpdates = "Check for updates automatically";

} // namespace

GeneralSectionView::GeneralSectionView(SettingsModel& model, const GeneralSettings::Services& services)
    : settings_(services)
    , changes_(model.observe([this] { refresh(); })) {
    auto* groups = new QVBoxLayout(this);
    groups->setContentsMargins(look::ringRoom, 0, look::ringRoom, 0);
    groups->setSpacing(look::groupGap);
    auto* first = new Group({});
    auto* open = new Button("Open Layout", Symbol::layout);
    connect(open, &QAbstractButton::clicked, this, [&model] { model.show(SettingsSection::layout); });
    first->addRow("Your layout is set up in the Layout section.", {open});
    groups->addWidget(first);
    addStartup(*groups);
    addPermission(*groups);
    groups->addStretch();
    refresh();
}

void GeneralSectionView::addStartup(QLayout& groups) {
    auto* group = new Group("Startup");
    auto* blocked = new Button("Start at Login is blocked in System Settings — open it", Symbol::warning);
    connect(blocked, &QAbstractButton::clicked, this, [this] { settings_.openLoginItemSettings(); });
    blocked_ = new FormRow(blocked);
    group->card().add(blocked_);

    startSwitch_ = new Switch;
    startSwitch_->setAccessibleName(startAtLogin);
    connect(startSwitch_, &QAbstractButton::clicked, this, [this](bool isOn) {
        settings_.setStartAtLogin(isOn);
        refresh();
    });
    startAtLogin_ = group->addRow(startAtLogin, {startSwitch_});
    loginItemFailure_ = startAtLogin_->addNote(Symbol::warning);

    updateSwitch_ = new Switch;
    updateSwitch_->setAccessibleName(checkForUpdates);
    connect(updateSwitch_, &QAbstractButton::clicked, this, [this](bool isOn) {
        // The answer may come in a window of its own, below which another section can be opened.
        const QPointer<QWidget> ownSwitch(updateSwitch_);
        settings_.setChecksForUpdates(isOn);
        if (ownSwitch) {
            refresh();
        }
    });
    group->addRow(checkForUpdates, {updateSwitch_});
    groups.addWidget(group);
}

void GeneralSectionView::addPermission(QLayout& groups) {
    auto* group = new Group("Permission");
    permission_ = new Note(std::nullopt, TextRole::body);
    openAccessibility_ = new Button("Open Accessibility Settings");
    connect(openAccessibility_, &QAbstractButton::clicked, this,
            [this] { settings_.openAccessibilitySettings(); });
    group->card().add(new FormRow(permission_, {openAccessibility_}));
    groups.addWidget(group);
}

void GeneralSectionView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // A person may come back from the desktop's own settings.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        refresh();
    }
}

void GeneralSectionView::refresh() {
    const auto status = settings_.loginItemStatus();
    const bool isBlocked = status == LoginItemStatus::requiresApproval;
    blocked_->setVisible(isBlocked);
    startAtLogin_->setVisible(!isBlocked);
    startSwitch_->setChecked(status == LoginItemStatus::enabled);
    const auto& failure = settings_.loginItemFailure();
    showOrHide(*loginItemFailure_, failure ? std::optional(QString::fromStdString(*failure)) : std::nullopt);
    startSwitch_->setAccessibleDescription(loginItemFailure_->text());
    updateSwitch_->setChecked(settings_.checksForUpdates());
    const bool isGranted = settings_.mayMoveWindows();
    permission_->setSymbol(isGranted ? Symbol::check : Symbol::warning);
    permission_->setText(isGranted ? "Accessibility granted"
                                   : "Karto cannot move windows without Accessibility permission");
    openAccessibility_->setVisible(!isGranted);
}

} // namespace karto
