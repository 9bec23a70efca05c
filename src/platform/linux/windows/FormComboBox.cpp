#include "platform/linux/windows/FormComboBox.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>

namespace sonvara {

namespace {

class FormComboBoxReader final : public QAccessibleWidget {
public:
    explicit FormComboBoxReader(FormComboBox* box) : QAccessibleWidget(box, QAccessible::ComboBox) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value) return box()->currentText();
        return QAccessibleWidget::text(kind);
    }

    // The only part of interest is the list of choices, which is there also while it is closed.
    [[nodiscard]] int childCount() const override { return 1; }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(box()->view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child != nullptr && child->object() == box()->view() ? 0 : -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override
    {
        return box()->view()->isVisible() &&
                       box()->view()->rect().contains(box()->view()->mapFromGlobal(QPoint(x, y)))
                   ? child(0)
                   : nullptr;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        auto state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = box()->view()->isVisible();
        state.collapsed = !state.expanded;
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
    void doAction(const QString& name) override
    {
        if (name != showMenuAction() && name != pressAction()) return;
        if (box()->view()->isVisible()) {
            box()->hidePopup();
        } else {
            box()->showPopup();
        }
    }

private:
    [[nodiscard]] QComboBox* box() const { return static_cast<QComboBox*>(widget()); }
};

QAccessibleInterface* makeReader(const QString& className, QObject* object)
{
    if (className != QLatin1String(FormComboBox::staticMetaObject.className())) return nullptr;
    return new FormComboBoxReader(static_cast<FormComboBox*>(object));
}

}  // namespace

FormComboBox::FormComboBox(QWidget* parent) : QComboBox(parent)
{
    [[maybe_unused]] static const bool installed = (QAccessible::installFactory(makeReader), true);
    // A closed list, too, tells a screen reader which choice is made.
    connect(this, &QComboBox::currentIndexChanged, this,
            [this](int index) { view()->setCurrentIndex(model()->index(index, modelColumn())); });
}

}  // namespace sonvara
