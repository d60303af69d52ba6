#include "desktop/window_test.h"

#include <utility>

namespace zelvion::testing {
namespace {

/// What a control has to be; its place is in twips. People call it `spoken`, else by its text.
struct Place {
  QString name, text;
  int left, top, width, height;
  QColor colour = {};
  bool bold = false, italic = false;
  int fontPixels = 11;
  QString spoken = {};
};

const QColor kYellow(255, 255, 0), kMauve(128, 128, 255), kMagenta(255, 0, 255), kNone;

// clang-format off
const std::vector<Place> kMain = {
    {"entier", "789", 120, 240, 6615, 615, kNone, true, false, 11, "Nombre p initial choisi"},
    {"Quitter", "&Quitter", 5760, 7080, 855, 495, kNone, true, true},
    {"Principe", "&PRINCIPE (détails sur la page théorique)", 120, 1440, 1455, 675},
    {"Label1", "Nombre p initial choisi:", 120, 0, 3015, 495, kNone, true},
    {"Label2", "Puissance k:", 840, 960, 1215, 495, kNone, true},
    {"ordrek", "3", 2040, 960, 1095, 375, kNone, true, false, 11, "Puissance k"},
    {"Command2", "100  itérés  de:", 120, 3240, 2055, 615, kYellow, true},
    {"elem", "17", 2280, 3480, 4575, 375, kNone, true, false, 11, "Point de départ des itinéraires"},
    {"Command3", "Recherche de CYCLES  (100.000 itérations)", 3840, 1680, 2775, 495, kYellow, true},
    {"Command4", "Recherche de CYCLES  (1.000.000 itérations)", 3840, 2160, 2775, 495, kYellow, true},
    {"Command6", "Itération de p (1000)", 5040, 840, 1695, 495, kYellow, true},
    {"Command7", "50  itérés de:", 120, 2880, 2055, 495, kYellow, true},
    {"RichTextBox1", "", 600, 3960, 6255, 2295, kNone, true, false, 13, "Fenêtre d'édition"},
    {"Command5", "Recherche des POINTS FIXES  (si k chiffres, nombres narcissiques parfaits)", 3600, 2640, 3255, 735, kYellow, true},
    {"Command8", "Nombre de chiffres de p ", 4800, 0, 2055, 255},
    {"Command10", "Transformé de p", 3360, 0, 1455, 255, kYellow},
    {"Command13", "Liste des silhouettes de 1 à 9999", 3240, 840, 1695, 495},
    {"Command9", "Liste des nombres narcissiques parfaits d'ordre k  ", 480, 6600, 4095, 495, kNone, true, true},
    {"Command11", "Nombre de silhouettes à  k chiffres", 2040, 2280, 1455, 615},
    {"Command12", "Tous les nombres narcissiques parfaits (k=1 à k=39)", 480, 7080, 4095, 495, kNone, true, true},
    {"Command14", "Date et Heure", 5760, 6360, 1215, 615, kNone, true, true},
    {"Command15", "Silhouette de p", 1920, 1800, 1695, 375},
    {"Command16", "Vers la page théorique sur les transformations velmoires", 1680, 1320, 5055, 375, kMauve, true},
    {"Command17", "Vers le site TOLQUE", 4680, 6600, 855, 735, kMauve, true},
    {"Command18", "Vers la page des systèmes dynamiques", 0, 2160, 1935, 735, kMauve, true},
    {"Command1", "Vider la fenêtre d'édition", 480, 6360, 4095, 255, kNone, true, true}};
const std::vector<Place> kAbout = {
    {"lblHeading", "Itérations sur les entiers: TRANSFORMATIONS VELMOIRES.", 0, 240, 4695, 855, kNone, false, false, 18},
    {"lblApplication", "NOMBRES NARCISSIQUES PARFAITS", 120, 960, 4695, 735, kNone, true, false, 18},
    {"lblCopyright", "Copyright © 2006-2007 Quenoril", 120, 1920, 4695, 615},
    {"cmdOK", "Fermer", 3240, 2640, 1095, 495, kNone, true, true},
    {"Command1", "La page des transformations velmoires sur les entiers (site TOLQUE)", 120, 2640, 3015, 615, kMagenta, true},
    {"Command2", "La page des systèmes dynamiques (site TOLQUE)", 120, 3360, 4455, 495, kMagenta, true}};
// clang-format on

/// Looks on while the caption of a button is painted.
class CaptionWatch : public QProxyStyle {
 public:
  void drawItemText(QPainter* painter, const QRect& room, int flags, const QPalette& palette, bool enabled,
                    const QString& text, QPalette::ColorRole role) const override {
    caption += text;
    given = room;
    needed = painter->fontMetrics().boundingRect(room, flags, text);
    font = painter->font();
    ink = palette.color(role);
    QProxyStyle::drawItemText(painter, room, flags, palette, enabled, text, role);
  }
  mutable QString caption;
  mutable QRect given, needed;
  mutable QFont font;
  mutable QColor ink;
};

/// The button shows its whole caption, on its colour, also in a font that runs wider.
void expectReadable(QPushButton& button, const Place& place) {
  for (const int stretch : {115, 100}) {
    QFont font = button.font();
    font.setStretch(stretch);
    button.setFont(font);
    CaptionWatch watch;
    button.setStyle(&watch);
    const QColor ground = button.grab().toImage().pixelColor(3, 3);
    button.setStyle(nullptr);
    EXPECT_EQ(watch.caption, place.text);
    EXPECT_TRUE(watch.given.contains(watch.needed) && button.rect().contains(watch.given));
    EXPECT_GE(watch.font.pixelSize(), 8);
    EXPECT_TRUE(watch.font.bold() == place.bold && watch.font.italic() == place.italic);
    EXPECT_EQ(ground.saturation() > 30, place.colour.isValid());
    EXPECT_TRUE(!place.colour.isValid() || ground == place.colour);
    EXPECT_GT(std::abs(qGray(watch.ink.rgb()) - qGray(ground.rgb())), 80);
  }
}

void expectPlaces(QWidget& window, const std::vector<Place>& places, QSize client) {
  const auto& area = *window.findChild<QScrollArea*>();
  EXPECT_EQ(area.widget()->size(), client);
  EXPECT_EQ(area.viewport()->size(), client);
  for (const Place& place : places) {
    SCOPED_TRACE(place.name.toStdString());
    QWidget& widget = part(window, place.name);
    EXPECT_EQ(QRect(widget.mapTo(area.widget(), QPoint()), widget.size()),
              QRect(place.left / 15, place.top / 15, place.width / 15, place.height / 15));
    EXPECT_EQ(textOf(widget), place.text);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name),
              place.spoken.isEmpty() ? QString(place.text).remove('&') : place.spoken);
    EXPECT_TRUE(widget.isEnabled() && widget.isVisible());
    EXPECT_TRUE(widget.font().bold() == place.bold && widget.font().italic() == place.italic);
    EXPECT_EQ(widget.font().pixelSize(), place.fontPixels);
    if (auto* button = qobject_cast<QPushButton*>(&widget)) expectReadable(*button, place);
  }
}

TEST_F(WindowTest, EveryControlIsAsItsTableSays) {
  EXPECT_EQ(window->windowHandle()->title(), kCaption);
  EXPECT_EQ(at<QLabel>("Label1").buddy(), &at("entier"));
  EXPECT_EQ(at<QLabel>("Label2").buddy(), &at("ordrek"));
  const QPalette usual = QApplication::palette();
  for (const QPalette& palette : {QPalette(QColor(40, 40, 40)), usual}) {
    QApplication::setPalette(palette);
    QApplication::processEvents();
    expectPlaces(*window, kMain, QSize(481, 515));
  }
}

TEST_F(WindowTest, KeyboardReachesEverything) {
  window->resize(260, 200);
  for (const bool back : {false, true}) {
    QStringList reached, wanted;
    for (const Place& place : kMain) {
      if (place.name.startsWith("Label")) continue;
      wanted += place.name;
      reached += QApplication::focusWidget()->objectName();
      EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty()) << reached.last().toStdString();
      EXPECT_EQ(at<QPlainTextEdit>("entier").textCursor().hasSelection(), place.name == "entier");
      key(back ? Qt::Key_Backtab : Qt::Key_Tab, back ? Qt::ShiftModifier : Qt::NoModifier);
    }
    if (back) std::reverse(wanted.begin() + 1, wanted.end());
    EXPECT_EQ(reached, wanted);
  }
  expectBox(kCaption + " Puissance k= 3", "Les transformations*\n*\n*fichier pfixe.txt.");
  key(Qt::Key_P, Qt::AltModifier);
  expectNoMore();

  key(Qt::Key_F10);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  key(Qt::Key_Escape);
  key(Qt::Key_Escape);
  key(Qt::Key_Question, Qt::AltModifier);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  QString items;
  for (const QAction* item : menu->actions()) items += item->text() + "|";
  EXPECT_EQ(items, "&A propos|&Information|&Fichier web mode d'emploi|");
  key(Qt::Key_I);
  EXPECT_EQ(textOf(at("RichTextBox1")).count('\n'), 8);
}

TEST_F(WindowTest, ImagesFollowEachOther) {
  for (const char* image : {"1584", "702", "351", "153"}) {
    press("Command10");
    EXPECT_EQ(textOf(at("entier")), image);
  }
  expectBox("Transformations velmoires, k = 3", "point fixe = 153",
            [](QWidget& box) { click(called<QPushButton>(box, "OK")); });
  press("Command10");
  type("ordrek", "2");
  at("Command10").setFocus();
  key(Qt::Key_Space);
  EXPECT_EQ(textOf(at("entier")), "35");
}

TEST_F(WindowTest, CycleSearchTellsAndRecords) {
  const QString record =
      " Puissance k= 3. Pour 789: Convergence vers le CYCLE d'ORDRE 1:\r\n(153)\r\n"
      "Points extrêmes du cycle: 153, 153 nombre de chiffres maximum: 3\r\n";
  const QString title = kCaption + " Itération k= 3", report = QString(record).remove('\r').chopped(1);
  const QString path = fileOf("velmoire.txt");
  const auto expectTime = [&] { expectBox("Début du calcul: *:*:*", "Temps de calcul:    * Seconde(s)"); };
  expectTime();
  expectBox(title, report, kEscape);
  press("Command3");
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(QString::fromUtf8(file.readAll()), record);

  // A result that cannot be written is told, and shown all the same.
  ASSERT_TRUE(file.remove() && QDir().mkdir(path));
  expectBox(kCaption + " Puissance k= 3", "*" + path + "*c’est un dossier*");
  expectTime();
  expectBox(title, report);
  press("Command3");
  EXPECT_TRUE(QDir().rmdir(path));

  type("entier", "");
  expectBox(title, "Choisissez un nombre à étudier!", [](QWidget& box) { box.windowHandle()->close(); });
  expectTime();
  expectBox(title, "*Pour 1:*\n(1)\n*", [this](QWidget& box) {
    EXPECT_EQ(textOf(at("entier")), "1") << "already while the box is open";
    kReturn(box);
  });
  press("Command3");
}

TEST_F(WindowTest, QuestionEndsWithNoEscapeAndClose) {
  const QString title = kCaption + " Itération k= 30";
  const QString question = "Pas de convergence à ce stade. On continue?\nAprès ";
  const Action clickNo = [](QWidget& box) { click(called<QPushButton>(box, "Non")); };
  const Action close = [](QWidget& box) { box.windowHandle()->close(); };
  type("ordrek", "30");
  for (const Action& no : {clickNo, kEscape, close}) {
    expectBox(title, question + "1000 itérations: 132239039851269302636582208846");
    expectBox(title, question + "2000 itérations: 128435284377492482239385187579", no);
    press("Command3");
    expectNoMore();
  }
  EXPECT_FALSE(QFile::exists(fileOf("velmoire.txt")));
}

TEST_F(WindowTest, WhatIsTypedArrivesToTheLetter) {
  for (const QString k : {"abc", "[*] a[*][*]", " 3,x\u00a0"}) {
    type("ordrek", k);
    type("elem", "98");
    expectBox(kCaption + " Puissance k= " + k, "*" + k.trimmed() + "*");
    press("Command10");
    EXPECT_EQ(form.ordrek.Text, k.toStdString());
    EXPECT_EQ(textOf(at("ordrek")) + textOf(at("elem")) + textOf(at("entier")), k + "98789");
  }
  type("entier", " 7\u00a08\r\n9\n\n\t<i>1</i>");
  press("Command1");
  EXPECT_EQ(form.entier.Text, " 7\u00a08\r\n9\r\n\r\n\t<i>1</i>");

  const QString digits(40'000, '7');
  for (const char* name : {"ordrek", "elem", "entier"}) type(name, digits);
  press("Command1");
  for (const auto& box : {form.ordrek, form.elem, form.entier}) EXPECT_TRUE(box.Text == digits.toStdString());
}

TEST_F(WindowTest, AboutIsModalAndOpensAgain) {
  const Action clickClose = [](QWidget& dialog) { click(part(dialog, "cmdOK")); };
  for (const Action& close : {clickClose, kEscape}) {
    expect([&](QWidget& dialog) {
      EXPECT_EQ(dialog.windowHandle()->title(), "À propos");
      expectPlaces(dialog, kAbout, QSize(312, 270));
      const QPoint middle = dialog.screen()->geometry().center();
      EXPECT_LE((dialog.frameGeometry().center() - middle).manhattanLength(), 2);
      press("Command10");
      close(dialog);
    });
    auto& bar = *window->findChild<QMenuBar*>();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                      bar.mapTo(window, bar.actionGeometry(bar.actions().constFirst()).center()));
    key(Qt::Key_A);
    expectNoMore();
  }
  EXPECT_EQ(textOf(at("entier")), "789");
}

TEST_F(WindowTest, MissingDataFileIsNamed) {
  window->findChild<QAction*>("mnuInfo")->trigger();
  QCoreApplication::processEvents();
  expectBox(kCaption + " Puissance k= 3", "*" + fileOf("amstrong.txt") + "*");
  press("Command12");
  EXPECT_EQ(textOf(at("RichTextBox1")).count('\n'), 8);
}

TEST_F(WindowTest, QuitterEndsTheProgram) {
  QTimer::singleShot(0, window, [this] { press("Quitter"); });
  QTimer::singleShot(20'000, window, [] { QApplication::exit(1); });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace zelvion::testing
