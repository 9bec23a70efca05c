#include "platform/linux/windows/LogDialog.h"

#include "platform/linux/style/StyledLabel.h"
#include "platform/linux/windows/BoundButton.h"
#include "platform/linux/windows/LogListView.h"

#include <QPointer>

namespace sonvara {

namespace {

constexpr int headerPadding = 16;
constexpr int buttonGap = 8;

QFrame* makeDivider()
{
    auto* divider = new QFrame;
    divider->setFrameShape(QFrame::HLine);
    divider->setFrameShadow(QFrame::Plain);
    divider->setForegroundRole(QPalette::Mid);
    return divider;
}

}  // namespace

LogDialog::LogDialog(LogSheet sheet, QWidget* window)
    : QDialog(window),
      sheet_(std::move(sheet)),
      pages_(new QStackedWidget),
      empty_(new StyledLabel(sheet_.emptyText)),
      list_(new LogListView(qRound(sheet_.rowSpacing), qRound(sheet_.columnSpacing)))
{
    setWindowTitle(QString::fromStdString(sheet_.title.text));
    setWindowModality(Qt::WindowModal);
    setFixedSize(qRound(sheet_.width), qRound(sheet_.height));

    auto* header = new QHBoxLayout;
    header->setContentsMargins(headerPadding, headerPadding, headerPadding, headerPadding);
    header->setSpacing(buttonGap);
    header->addWidget(new StyledLabel(sheet_.title));
    header->addStretch(1);
    Mnemonics mnemonics;
    for (const auto& button : sheet_.buttons) addButton(*header, button, mnemonics);

    static_cast<QLabel*>(empty_)->setAlignment(Qt::AlignCenter);
    pages_->addWidget(empty_);
    pages_->addWidget(list_);
    list_->setAccessibleName(QString::fromStdString(sheet_.title.text));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(header);
    column->addWidget(makeDivider());
    column->addWidget(pages_, 1);

    changes_ = sheet_.onChange([this] { refresh(); });
    refresh();
}

void LogDialog::addButton(QHBoxLayout& header, const PushButton& button, Mnemonics& mnemonics)
{
    auto* push = new BoundButton(button, mnemonics);
    push->setAutoDefault(false);  // Enter presses only what has the keyboard
    header.addWidget(push);
    buttons_.push_back(push);
    connect(push, &QPushButton::clicked, this, [this, action = button.action] {
        const QPointer<LogDialog> self(this);
        action();
        if (self) refresh();  // the action may have dismissed the sheet
    });
}

void LogDialog::refresh()
{
    auto rows = sheet_.rows();
    pages_->setCurrentWidget(rows.empty() ? empty_ : list_);
    list_->setRows(std::move(rows));
    for (auto* button : buttons_) button->refresh();
}

}  // namespace sonvara
