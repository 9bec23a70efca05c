#include "platform/linux/windows/FormWidget.h"

#include "platform/linux/style/StyledLabel.h"
#include "platform/linux/windows/BoundButton.h"
#include "platform/linux/windows/FormComboBox.h"
#include "platform/linux/windows/LogDialog.h"
#include "platform/linux/windows/SectionCard.h"

#include <QCheckBox>
#include <QEvent>
#include <QScreen>
#include <QShowEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace sonvara {

namespace {

// Just so large that the settings need no more than the form asks for in the fonts that desktops come with (of 9 to
// 11 points). What is left over goes between the sections.
constexpr int margin = 12;
constexpr int marginAbove = 8;
constexpr int marginBelow = 9;
constexpr int sectionGap = 5;
constexpr int headerGap = 3;
constexpr double largestShareOfScreen = 0.9;

}  // namespace

FormWidget::FormWidget(std::shared_ptr<const Form> form, QWidget* parent)
    : QScrollArea(parent),
      form_(std::move(form))
{
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(margin, marginAbove, margin, marginBelow);
    column->setSpacing(0);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    for (const auto& section : form_->sections) addSection(section);
    changes_ = form_->onChange([this] { refresh(); });
    refresh();
}

FormWidget::~FormWidget() = default;

QSize FormWidget::sizeHint() const
{
    const int width = qRound(form_->width);
    const int wanted = std::max(qRound(form_->height), widget()->layout()->totalHeightForWidth(width));
    const int limit = qRound(screen()->availableGeometry().height() * largestShareOfScreen);
    return {width, std::min(wanted, limit)};
}

bool FormWidget::event(QEvent* event)
{
    const bool handled = QScrollArea::event(event);
    if (event->type() == QEvent::LayoutRequest) updateGeometry();  // a larger font makes the form higher
    return handled;
}

void FormWidget::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    if (!event->spontaneous()) perform(form_->onAppear);
}

void FormWidget::addSection(const FormSection& section)
{
    auto* column = static_cast<QVBoxLayout*>(widget()->layout());
    if (column->count() > 0) {
        column->addSpacing(sectionGap);
        column->addStretch(1);
    }
    auto* header = new StyledLabel({section.header, FontRole::headline, ColorRole::label});
    header->setContentsMargins(2, 0, 0, 0);
    auto* card = new SectionCard;
    card->setAccessibleName(QString::fromStdString(section.header));
    column->addWidget(header);
    column->addSpacing(headerGap);
    column->addWidget(card);
    for (const auto& row : section.rows) {
        std::visit([&](const auto& value) { addRow(*card, value); }, row);
    }
}

void FormWidget::addRow(SectionCard& card, const Toggle& toggle)
{
    const auto title = QString::fromStdString(toggle.title);
    auto* box = new QCheckBox(withMnemonic(title, mnemonics_.pick(title)));
    box->setAccessibleName(title);
    card.addRow(box);
    refreshers_.emplace_back([box, get = toggle.isOn.get] {
        const QSignalBlocker onlyTheUserCounts(box);
        box->setChecked(get());
    });
    // Not `clicked`: a screen reader turns the switch over without a click.
    connect(box, &QCheckBox::toggled, this,
            [this, set = toggle.isOn.set](bool on) { perform([&] { set(on); }); });
}

void FormWidget::addRow(SectionCard& card, const Picker& picker)
{
    const auto title = QString::fromStdString(picker.title);
    auto* label = new QLabel(withMnemonic(title, mnemonics_.pick(title)));
    auto* box = new FormComboBox;
    box->setAccessibleName(title);
    label->setBuddy(box);
    for (const auto& option : picker.options)
        box->addItem(QString::fromStdString(option.label), QString::fromStdString(option.tag));
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addStretch(1);
    row->addWidget(box);
    card.addRow(row);
    refreshers_.emplace_back([box, label, get = picker.selection.get, isEnabled = picker.isEnabled] {
        box->setCurrentIndex(box->findData(QString::fromStdString(get())));
        box->setEnabled(isEnabled());
        label->setEnabled(isEnabled());
    });
    connect(box, &QComboBox::activated, this, [this, box, set = picker.selection.set](int index) {
        perform([&] { set(box->itemData(index).toString().toStdString()); });
    });
}

void FormWidget::addRow(SectionCard& card, const PushButton& button)
{
    auto* push = new BoundButton(button, mnemonics_);
    auto* row = new QHBoxLayout;
    row->addWidget(push);
    row->addStretch(1);
    card.addRow(row);
    refreshers_.emplace_back([push] { push->refresh(); });
    connect(push, &QPushButton::clicked, this, [this, action = button.action] { perform(action); });
}

void FormWidget::addRow(SectionCard& card, const StyledText& text)
{
    auto* label = new StyledLabel(text);
    label->setWordWrap(true);
    card.addRow(label);
}

void FormWidget::perform(const std::function<void()>& change)
{
    const QPointer<FormWidget> self(this);
    change();
    if (self) refresh();  // the change may have closed the window
}

void FormWidget::refresh()
{
    for (const auto& refresher : refreshers_) refresher();
    refreshSheet();
}

void FormWidget::refreshSheet()
{
    const bool isShown = form_->isSheetShown.get();
    if (isShown == !sheet_.isNull()) return;
    if (!isShown) {
        sheet_->hide();
        sheet_->deleteLater();
        sheet_.clear();
        return;
    }
    sheet_ = new LogDialog(form_->sheet(), window());
    connect(sheet_, &QDialog::finished, this,
            [this] { perform([this] { form_->isSheetShown.set(false); }); });
    sheet_->open();
}

}  // namespace sonvara
