// Draws a settings form.
#pragma once

#include "platform/linux/style/Mnemonics.h"
#include "ports/Form.h"

#include <QPointer>
#include <QScrollArea>

#include <functional>
#include <memory>
#include <vector>

namespace sonvara {

class LogDialog;
class SectionCard;

/// Shows `form` in native widgets and keeps them equal to its bindings; also shows its sheet. As wide as
/// the form asks for, and at least as high: it grows until all is seen, up to what the screen has room for.
/// Main thread.
class FormWidget final : public QScrollArea {
    Q_OBJECT

public:
    explicit FormWidget(std::shared_ptr<const Form> form, QWidget* parent = nullptr);
    ~FormWidget() override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void addSection(const FormSection& section);
    void addRow(SectionCard& card, const Toggle& toggle);
    void addRow(SectionCard& card, const Picker& picker);
    void addRow(SectionCard& card, const PushButton& button);
    static void addRow(SectionCard& card, const StyledText& text);

    /// Does what the user asked for, then shows what has come of it.
    void perform(const std::function<void()>& change);
    void refresh();
    void refreshSheet();

    std::shared_ptr<const Form> form_;
    Mnemonics mnemonics_;
    std::vector<std::function<void()>> refreshers_;  ///< one for each control
    QPointer<LogDialog> sheet_;
    Subscription changes_;
};

}  // namespace sonvara
