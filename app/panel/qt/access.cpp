#include "app/panel/qt/access.h"

#include <QAbstractButton>
#include <QAccessibleWidget>

#include "app/panel/qt/text_views.h"

namespace tarnwick::panel {
namespace {

constexpr const char* roleProperty = "accessibleRole";

// A view with a role of ours. One that can be pressed is a fold: its row is open or closed, not ticked, and
// its name says all that the views in the row say.
class ViewAccess : public QAccessibleWidget {
 public:
  ViewAccess(QWidget* view, QAccessible::Role role)
      : QAccessibleWidget(view, role), button_(qobject_cast<QAbstractButton*>(view)) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (button_ == nullptr) return state;
    state.expandable = true;
    state.expanded = button_->isChecked();
    state.collapsed = !button_->isChecked();
    return state;
  }

  int childCount() const override { return button_ != nullptr ? 0 : QAccessibleWidget::childCount(); }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (button_ != nullptr) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString& name) override {
    if (button_ != nullptr && name == pressAction()) {
      button_->click();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  QAbstractButton* button_;  // null: not a button
};

QAccessibleInterface* accessOf(const QString& /*className*/, QObject* object) {
  auto* view = qobject_cast<QWidget*>(object);
  if (view == nullptr) return nullptr;
  const QVariant role = view->property(roleProperty);
  return role.isValid() ? new ViewAccess(view, static_cast<QAccessible::Role>(role.toInt())) : nullptr;
}

}  // namespace

void installAccess() { QAccessible::installFactory(accessOf); }

void giveRole(QWidget* view, QAccessible::Role role) { view->setProperty(roleProperty, int{role}); }

void giveVoice(QWidget* view, const Spoken& spoken) {
  if (spoken.name.empty()) return;
  giveRole(view, spoken.announced ? QAccessible::Notification : QAccessible::Grouping);
  view->setAccessibleName(printable(spoken.name));
  view->setAccessibleDescription(printable(spoken.description));
}

}  // namespace tarnwick::panel
