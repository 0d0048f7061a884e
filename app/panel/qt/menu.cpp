#include "app/panel/qt/menu.h"

#include <QAction>

namespace tarnwick::panel {

void addLines(QMenu& menu, const std::vector<MenuItem>& items, const Perform& perform) {
  for (const MenuItem& item : items) {
    if (item.title.empty()) {
      menu.addSeparator();
      continue;
    }
    // Nothing in a title is a key to press.
    QAction* line = menu.addAction(QString::fromStdString(item.title).replace('&', QLatin1String("&&")));
    line->setCheckable(item.checkable);
    line->setChecked(item.checked);
    QObject::connect(line, &QAction::triggered, &menu, [perform, action = item.action] { perform(action); });
  }
}

void markLines(QMenu& menu, const std::vector<MenuItem>& items) {
  const QList<QAction*> lines = menu.actions();
  const qsizetype first = lines.size() - static_cast<qsizetype>(items.size());
  for (std::size_t i = 0; i < items.size(); ++i)
    lines[first + static_cast<qsizetype>(i)]->setChecked(items[i].checked);
}

}  // namespace tarnwick::panel
