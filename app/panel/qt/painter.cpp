#include "app/panel/qt/painter.h"

#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "app/panel/arrangement.h"
#include "app/panel/qt/access.h"
#include "app/panel/qt/control_views.h"
#include "app/panel/qt/enlarged.h"
#include "app/panel/qt/symbol_views.h"
#include "app/panel/qt/text_views.h"

namespace tarnwick::panel {
namespace {

constexpr int unbounded = 4000;
constexpr int scrollerWidth = 10;  // lies in the margin beside the list
constexpr double foldPadding = 3;  // above and below the row

int whole(double points) { return static_cast<int>(std::lround(points)); }

// What one node became: one view, or those of a stack that shows nothing itself, each in its place.
struct Made {
  std::vector<QWidget*> views;
  QSize size;
};

Made alone(QWidget* view) { return {{view}, view->size()}; }

void place(const Made& made, QPoint spot) {
  for (QWidget* view : made.views) view->move(view->pos() + spot);
}

// A rounded surface.
class BoxView : public QWidget {
 public:
  BoxView(const QColor& colour, const QColor& outline, std::optional<double> radius, QWidget* parent)
      : QWidget(parent), colour_(colour), outline_(outline), radius_(radius) {}

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour_);
    const double radius = radius_.value_or(height() / 2.0);
    painter.drawRoundedRect(rect(), radius, radius);
    if (outline_.alpha() == 0) return;
    painter.setPen(QPen(outline_, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
  }

 private:
  QColor colour_;
  QColor outline_;
  std::optional<double> radius_;
};

// One walk over a tree. Every function returns views at their final size, children of `parent` and no wider
// than `width`. A view is dear: what neither shows nor tells anything gets none.
class Walk {
 public:
  Walk(const Theme& theme, const Perform& perform, TextBlocks& texts)
      : theme_(theme), perform_(perform), texts_(texts) {}

  Made make(const Node& node, int width, QWidget* parent) const {
    return std::visit([&](const auto& view) { return makeView(view, width, parent); }, node.view);
  }

  // All of it in one view.
  QWidget* makeWhole(const Node& node, int width, QWidget* parent) const {
    auto* whole = new QWidget(parent);
    whole->resize(make(node, width, whole).size);
    return whole;
  }

 private:
  Made makeView(const Stack& stack, int width, QWidget* parent) const {
    QWidget* box = nullptr;
    if (!stack.toolTip.empty() || !stack.spoken.name.empty()) {
      box = new QWidget(parent);
      box->setToolTip(plainToolTip(stack.toolTip, theme_.scale()));
      giveVoice(box, stack.spoken);
    }
    std::vector<Made> children(stack.children.size());
    const Arrangement arrangement = arrange(stack, width, [&](std::size_t i, double childWidth) -> Extent {
      children[i] = make(stack.children[i], whole(childWidth), box == nullptr ? parent : box);
      return {static_cast<double>(children[i].size.width()), static_cast<double>(children[i].size.height())};
    });
    const bool inOrder = std::ranges::none_of(stack.children, &Node::grows);
    Made all{{}, QSize(whole(arrangement.size.width), whole(arrangement.size.height))};
    for (std::size_t i = 0; i < children.size(); ++i) {
      place(children[i], QPoint(whole(arrangement.spots[i].x), whole(arrangement.spots[i].y)));
      for (QWidget* view : children[i].views) {
        if (!inOrder) view->raise();  // in reading order, whatever was made first
        all.views.push_back(view);
      }
    }
    if (box == nullptr) return all;
    box->resize(all.size);
    return alone(box);
  }

  Made makeView(const Label& label, int width, QWidget* parent) const {
    const int widest = label.wrapWidth ? std::min(whole(*label.wrapWidth), width) : width;
    const QString text = printable(label.text);
    const QFont font = Theme::font(label.font, theme_.scale());
    const QColor colour = theme_.colour(label.colour);
    QWidget* view = nullptr;
    if (label.selectable) {
      view = new CopyableText(QString::fromStdString(label.text), font, colour, widest, parent);
    } else {
      const bool figure = label.font == FontRole::metric || label.font == FontRole::number;
      const Digits digits = figure ? Digits::alike : Digits::asTheyCome;
      view = new TextView(text, texts_.of(text, font, widest, digits), font, colour, parent);
    }
    if (!label.id.empty()) view->setObjectName(QString::fromStdString(label.id));
    if (!label.description.empty()) view->setAccessibleDescription(printable(label.description));
    return alone(view);
  }

  Made makeView(const Symbol& symbol, int /*width*/, QWidget* parent) const {
    return alone(new SymbolView(symbol, theme_.colour(symbol.colour), parent));
  }

  Made makeView(const Button& button, int width, QWidget* parent) const {
    const int widest = button.wrapWidth ? std::min(whole(*button.wrapWidth), width) : width;
    auto* view = new ButtonView(button, theme_, texts_, widest, parent);
    QObject::connect(view, &QPushButton::clicked, view,
                     [perform = &perform_, action = button.action] { (*perform)(action); });
    return alone(view);
  }

  Made makeView(const Box& box, int width, QWidget* parent) const {
    QColor ground = theme_.colour(box.background);
    ground.setAlphaF(static_cast<float>(box.opacity));
    auto* view = new BoxView(ground, theme_.boxOutline(), box.cornerRadius, parent);
    giveVoice(view, box.spoken);
    const QMargins insets = margins(box.insets);
    const int outer = box.width ? std::min(whole(*box.width), width) : width;
    const int widest = box.widest ? std::max(whole(*box.widest), outer) : outer;
    const Made child = make(box.child.at(0), widest - insets.left() - insets.right(), view);
    place(child, QPoint(insets.left(), insets.top()));
    const QSize fitting = child.size.grownBy(insets);
    view->resize(box.width ? std::max(outer, fitting.width()) : fitting.width(), fitting.height());
    return alone(view);
  }

  // Its scroller lies in the margin.
  Made makeView(const Scroll& scroll, int width, QWidget* parent) const {
    const int listWidth = std::min(whole(scroll.width), width);
    auto* area = new QScrollArea(parent);
    area->setObjectName(QStringLiteral("list"));
    giveVoice(area, {scroll.accessibleName, "", false});
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);
    QWidget* list = makeWhole(scroll.child.at(0), listWidth, area);
    list->resize(listWidth, list->height());
    const int height = scroll.heightCap ? std::min(whole(*scroll.heightCap), list->height()) : list->height();
    area->setWidget(list);
    list->setAutoFillBackground(false);
    area->setVerticalScrollBarPolicy(height < list->height() ? Qt::ScrollBarAlwaysOn
                                                             : Qt::ScrollBarAlwaysOff);
    area->verticalScrollBar()->setFixedWidth(scrollerWidth);
    area->verticalScrollBar()->setStyleSheet(scrollerStyle());
    area->resize(listWidth + scrollerWidth, height);
    return {{area}, {listWidth, height}};
  }

  Made makeView(const Fold& fold, int width, QWidget* parent) const {
    auto* view = new FoldView(fold, theme_, parent);
    const Made row = make(fold.row.at(0), width, view);
    for (QWidget* part : row.views) part->setAttribute(Qt::WA_TransparentForMouseEvents);
    const int padding = whole(foldPadding * theme_.scale());
    place(row, QPoint(0, padding));
    view->resize(row.size.width(), row.size.height() + 2 * padding);
    QObject::connect(view, &QPushButton::clicked, view,
                     [perform = &perform_, action = fold.action] { (*perform)(action); });
    return alone(view);
  }

  Made makeView(const Spinner& spinner, int /*width*/, QWidget* parent) const {
    return alone(new SpinnerView(spinner, theme_.colour(ColourRole::secondary), parent));
  }

  static QMargins margins(const Insets& insets) {
    return {whole(insets.left), whole(insets.top), whole(insets.right), whole(insets.bottom)};
  }

  QString scrollerStyle() const {
    const QColor colour = theme_.colour(ColourRole::secondary);
    return QStringLiteral(
               "QScrollBar{background:transparent;width:%1px;margin:0}"
               "QScrollBar::handle{background:rgba(%2,%3,%4,150);border-radius:3px;min-height:24px;margin:0 2px}"
               "QScrollBar::add-line,QScrollBar::sub-line{height:0}"
               "QScrollBar::add-page,QScrollBar::sub-page{background:transparent}")
        .arg(scrollerWidth)
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue());
  }

  const Theme& theme_;
  const Perform& perform_;
  TextBlocks& texts_;
};

}  // namespace

QWidget* paint(const Node& node, const Theme& theme, const Perform& perform, QWidget* parent,
               TextBlocks* texts) {
  TextBlocks ownTexts;
  const Walk walk(theme, perform, texts == nullptr ? ownTexts : *texts);
  if (theme.scale() == 1) return walk.makeWhole(node, unbounded, parent);
  return walk.makeWhole(enlarged(node, theme.scale()), unbounded, parent);
}

}  // namespace tarnwick::panel
