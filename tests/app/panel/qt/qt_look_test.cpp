// What the panel looks like with whatever it has to show: nothing cut off, overlapping or hard to read.
#include <QAbstractButton>
#include <QImage>
#include <QPainter>
#include <QScrollArea>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolTip>
#include <unordered_map>

#include "app/panel/qt/contrast.h"
#include "app/panel/qt/control_views.h"
#include "app/panel/qt/painter.h"
#include "app/panel/qt/text_views.h"
#include "tests/app/panel/panel_sample.h"

namespace {

const Perform nothing;

// A panel on the ground of a window.
struct Painted {
  Painted(const Shown& shown, const Look& look) {
    const Theme theme(look);
    window.setPalette(theme.palette());
    window.setAutoFillBackground(true);
    panel = paint(content(shown.view(), {.showMore = true, .showLeftovers = true}, sampleTime), theme,
                  nothing, &window);
    window.resize(panel->size());
    window.show();  // the list lies in its frame only then
  }

  std::vector<QWidget*> texts() const {
    std::vector<QWidget*> all;
    for (auto* view : panel->findChildren<QWidget*>()) {
      const auto* button = qobject_cast<QAbstractButton*>(view);
      const bool titled = button != nullptr && button->children().isEmpty() &&
                          button->objectName() != "menu" && button->objectName() != "refresh";
      if (qobject_cast<QTextEdit*>(view) != nullptr || view->inherits("QLabel") || titled)
        all.push_back(view);
    }
    return all;
  }

  QWidget window;
  QWidget* panel = nullptr;
};

void expectRoomForEverything(const Painted& painted, double scale) {
  EXPECT_EQ(painted.panel->width(), 400 * scale);
  EXPECT_EQ(painted.panel->findChild<QScrollArea*>("list")->widget()->width(), 372 * scale);
  EXPECT_GT(painted.texts().size(), 30U);
  for (QWidget* view : painted.texts()) {
    auto* edit = qobject_cast<QTextEdit*>(view);
    EXPECT_TRUE(edit == nullptr || edit->document()->size().height() <= edit->height());
    for (QWidget* around = view; around != painted.panel; around = around->parentWidget()) {
      EXPECT_TRUE(around->parentWidget()->rect().contains(around->geometry()))
          << view->accessibleName().left(50).toStdString() << around->metaObject()->className();
      for (auto* other :
           around->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        EXPECT_TRUE(other == around || other->isHidden() || !other->geometry().intersects(around->geometry()))
            << view->accessibleName().left(50).toStdString() << " overlaps";
    }
  }
}

// Everywhere where somebody's name may come to stand.
Shown shownWith(const std::string& name) {
  Shown shown{.snap = sampleSnapshot(), .found = sampleFindings()};
  for (Finding& finding : shown.found) {
    finding.title = finding.summary = finding.detail = name;
    finding.actions = {{name, {QuitApp{name}}}, {name + "2", {QuitApp{name + "2"}}}};
    finding.steps = {{name, std::nullopt}, {name, finding.actions.back()}};
    finding.metric = name;
  }
  shown.note = Note{name, "hourglass", NoteColor::orange, sampleTime};
  shown.openCard = shown.found.front().id;
  shown.users.rows = {{.what = name, .bytes = 2048 * mib, .cpu = 1}};
  return shown;
}

void expectPlainText(const Painted& painted) {
  for (auto* view : painted.panel->findChildren<QWidget*>()) {
    const auto* label = qobject_cast<QLabel*>(view);
    EXPECT_TRUE(label == nullptr || label->textFormat() == Qt::PlainText);
    const QString told = view->accessibleName() + view->accessibleDescription();
    for (const QChar c : label == nullptr ? told : told + label->text())
      EXPECT_TRUE(c.category() != QChar::Other_Control && c != QChar(0x2028) && c != QChar(0x202E));
  }
}

TEST(QtLook, NamesStayTextAndNothingIsCutOffOrOverlaps) {
  const auto repeated = [](const char* text, int count) {
    return QString(text).repeated(count).toStdString();
  };
  const std::string names[] = {"a\x01\x1b[31m\nb\r\tc\x7f",
                               "\u05E9\u05DC\u05D5\u05DD \u202Eevil\u202C \u2067x\u2069 \u200F",
                               "<b>&amp;<img src=x><a href='y'>&Quit</b>",
                               "one\u2028two\u2029three\u0085four",
                               repeated("W", 200),
                               "one/" + repeated("very", 60) + "/long/path and more words after it",
                               repeated("storefront-db and ", 20),
                               repeated("x", 10'000),
                               repeated("👩‍👩‍👧‍👦🏳️‍🌈", 40),
                               "Z" + repeated("\u0335\u0301\u0489", 100)};
  for (const std::string& name : names) {
    for (const double scale : {1.0, 1.5}) {
      SCOPED_TRACE(testing::Message() << name.substr(0, 30) << " at " << scale);
      const Painted painted(shownWith(name), {.scale = scale});
      expectRoomForEverything(painted, scale);
      expectPlainText(painted);
    }
    const QString tip = plainToolTip(name, 1);
    QTextDocument document;
    document.setDefaultFont(QToolTip::font());
    document.setHtml(tip);
    const QString seen = document.toPlainText().remove('\n').remove(QChar(0x2026));
    EXPECT_EQ(seen, printable(name).left(1499).remove(QChar(0x2026)));
    EXPECT_LE(document.idealWidth(), 600) << "no wider, even where marks are heaped on one letter";
    const TextBlock line(printable(name).left(40), Theme::font(FontRole::callout), 4000);
    EXPECT_EQ(line.lines().size(), 1) << name;
  }
}

TEST(QtLook, ANameInAnotherScriptDoesNotTurnTheSentenceAround) {
  const auto drawn = [](const char* text) {
    const TextBlock block(QString(text), Theme::font(FontRole::callout), 4000);
    QImage image(block.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    block.draw(painter, {0, 0});
    return image;
  };
  EXPECT_NE(drawn("\u05E9\u05DC\u05D5\u05DD runs"), drawn("runs \u05E9\u05DC\u05D5\u05DD"));
}

TEST(QtLook, ALongNoteWrapsAt356AndHangsOverOnBothSides) {
  Shown shown{.snap = sampleSnapshot()};
  const auto note = [&](const QString& text) {
    shown.note = Note{text.toStdString(), "hourglass", NoteColor::orange, sampleTime};
    const Painted painted(shown, {});
    const QTextEdit* view = painted.panel->findChild<QTextEdit*>();
    const QWidget* box = view->parentWidget();
    return std::tuple(view->lineWrapColumnOrWidth(), box->x(), box->width());
  };
  EXPECT_EQ(note("Done."), std::tuple(356, 14, 372));
  EXPECT_EQ(note(QString("x").repeated(500)), std::tuple(356, 3, 394));
}

TEST(QtLook, DigitsOfFiguresStandInPlacesOfOneWidth) {
  const QFont font = Theme::font(FontRole::metric, 4);  // the size of a picture, where a pixel tells
  const auto width = [&](const char* text, Digits digits) {
    return TextBlock(text, font, 4000, digits).size().width();
  };
  EXPECT_NE(width("11.1 GB", Digits::asTheyCome), width("88.8 GB", Digits::asTheyCome));
  for (const char* figure : {"11.1 GB", "01.7 GB", "90.1 GB"})
    EXPECT_EQ(width(figure, Digits::alike), width("88.8 GB", Digits::alike)) << figure;
}

// Four pixels to a point, so that the strokes of every letter are filled.
QImage pictureOf(Painted& painted) {
  QImage image(painted.window.size() * 4, QImage::Format_RGB32);
  image.setDevicePixelRatio(4);
  painted.window.render(&image);
  return image;
}

// Of what is drawn in that area, against what most of it is.
double contrastIn(const QImage& image, const QRect& area) {
  std::unordered_map<QRgb, int> counts;
  const QRect pixels(area.topLeft() * 4, area.size() * 4);
  for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
    for (int x = pixels.left(); x <= pixels.right(); ++x) ++counts[image.pixel(x, y)];
  }
  const auto most = std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; });
  double strongest = 1;
  for (const auto& [colour, count] : counts) {
    if (count > 8) strongest = std::max(strongest, contrast(colour, most->first));
  }
  return strongest;
}

TEST(QtLook, EveryTextStandsOutFromItsGround) {
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
  EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.478, 0.001);
  Shown shown{.snap = sampleSnapshot(), .found = sampleFindings()};
  shown.openCard = "docker";
  const std::optional<QColor> accents[] = {std::nullopt, QColor(0xff, 0xd7, 0x00), QColor(0x1a, 0x1a, 0x40)};
  const NoteColor notes[] = {NoteColor::green, NoteColor::orange, NoteColor::secondary};
  for (const bool dark : {false, true}) {
    for (const bool high : {false, true}) {
      for (int i = 0; i < 3; ++i) {
        shown.note = Note{"Done.", "hourglass", notes[i], sampleTime};
        shown.snap->pressure = i;  // the last chip warns
        Painted painted(shown, {.dark = dark, .highContrast = high, .accent = accents[i]});
        for (const bool pressed : {false, true}) {
          for (auto* button : painted.panel->findChildren<QAbstractButton*>()) button->setDown(pressed);
          const QImage image = pictureOf(painted);
          for (const QWidget* view : painted.texts()) {
            const QRect area(view->mapTo(&painted.window, QPoint(0, 0)), view->size());
            EXPECT_GE(contrastIn(image, area), high ? highContrast : plainContrast)
                << dark << high << pressed << view->objectName().toStdString()
                << view->accessibleName().toStdString();
          }
        }
      }
    }
  }
}

}  // namespace
