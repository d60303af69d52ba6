#include "explorer/window.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QtTest>
#include <QtWidgets>

#include "explorer/export.h"
#include "explorer/number_text.h"
#include "explorer/picture_view.h"
#include "explorer/pictures.h"

namespace zelvion::testing {
namespace {

class AtlasWindowTest : public ::testing::Test {
 protected:
  AtlasWindowTest() {
    window.resize(800, 600);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(soon([&] { return table().model()->rowCount() == 10 && sentence().contains("153"); }));
  }

  template <typename Condition>
  static bool soon(const Condition& condition) {
    return QTest::qWaitFor(condition, 20'000);
  }
  /// The part that people call `name`.
  template <typename T>
  T& called(const QString& name) {
    for (T* part : window.findChildren<T*>()) {
      if (part->accessibleName() == name || part->property("text") == name) return *part;
    }
    throw std::logic_error("nothing is called " + name.toStdString());
  }
  QTableView& table() { return called<QTableView>("Liste des cycles"); }
  /// The text of a label without its links, all its blanks alike.
  QString textOf(const QString& name) {
    return QTextDocumentFragment::fromHtml(called<QLabel>(name).text()).toPlainText();
  }
  QString sentence() { return textOf("Où va p"); }
  void type(const QString& name, const QString& text) {
    auto& box = called<QWidget>(name);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&box, text);
  }

  AtlasWindow window;
};

TEST_F(AtlasWindowTest, ShowsWhereANumberGoes) {
  EXPECT_EQ(sentence(), "789 : 4 pas, puis le point fixe 153");
  EXPECT_EQ(table().currentIndex().siblingAtColumn(CycleTable::kLeast).data(), "153");
  EXPECT_EQ(called<NumberText>("Itérés de p").text(), "0  789\n1  1584\n2  702\n3  351\n4  153");
  EXPECT_TRUE(soon([&] { return textOf("Ce qui est prouvé").startsWith("Tout nombre finit sous 10⁴. "); }));

  type("Nombre p", "12a");
  EXPECT_TRUE(textOf("Refus").contains("« a » en position 3")) << textOf("Refus").toStdString();
  EXPECT_EQ(called<QPlainTextEdit>("Nombre p").toPlainText(), "12a");
  type("Nombre p", "136");
  EXPECT_TRUE(soon([&] { return sentence() == "136 : déjà sur le cycle d’ordre 2 qui passe par 136"; }));
  EXPECT_FALSE(called<QLabel>("Refus").isVisible());
  EXPECT_EQ(called<NumberText>("Points du cycle").text(), "136\n244");

  type("Puissance k", "170");
  EXPECT_TRUE(textOf("Refus").contains("il faut un nombre de 1 à 100"));
  type("Puissance k", "2");
  EXPECT_TRUE(soon([&] { return table().model()->rowCount() == 3; }));
}

TEST_F(AtlasWindowTest, EveryNumberCanBeFollowed) {
  auto& iterates = called<NumberText>("Itérés de p");
  called<QTabWidget>("").setCurrentIndex(1);
  QTest::mouseClick(iterates.viewport(), Qt::LeftButton, {},
                    iterates.cursorRect().center() + QPoint(30, iterates.fontMetrics().lineSpacing()));
  EXPECT_TRUE(soon([&] { return sentence().startsWith("1584 : 3 pas"); }));
  table().setFocus();
  table().setCurrentIndex(table().model()->index(0, CycleTable::kFarthest));
  QTest::keyClick(&table(), Qt::Key_Down);
  const QString number = table().currentIndex().data().toString();
  QTest::keyClick(&table(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), number);
  QTest::keyClick(&table(), Qt::Key_Return);
  EXPECT_TRUE(soon([&] { return sentence().startsWith(number + " : "); }));

  auto& map = called<PictureView>("Carte");
  called<QTabWidget>("").setCurrentIndex(0);
  map.setFocus();
  for (const Qt::Key key : {Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Left, Qt::Key_Home, Qt::Key_PageDown})
    QTest::keyClick(&map, key);
  const QString named = textOf("Ce que montre le pointeur");
  EXPECT_TRUE(named.startsWith("Les chiffres ")) << named.toStdString();
  EXPECT_TRUE(map.accessibleDescription().startsWith(named.left(17)));
  QTest::keyClick(&map, Qt::Key_Return);
  EXPECT_TRUE(soon([&] { return !sentence().startsWith(number + " : "); }));
}

TEST_F(AtlasWindowTest, LongWorkIsToldInterruptedAndAskedForAgain) {
  auto& stop = called<QPushButton>("&Interrompre");
  type("Puissance k", "60");
  const auto& progress = called<QProgressBar>("Avancement");
  EXPECT_TRUE(soon([&] { return progress.isVisible() && progress.text().contains("Cycles trouvés"); }));
  EXPECT_TRUE(soon([&] { return sentence().contains("puis le cycle d’ordre"); }));
  EXPECT_TRUE(stop.isVisible());
  EXPECT_EQ(table().model()->rowCount(), 0);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(stop.isVisible());
  EXPECT_TRUE(textOf("Ce qui est prouvé").contains("n’est pas connue"));
  QTest::mouseClick(&called<QPushButton>("Chercher les cycles"), Qt::LeftButton);
  EXPECT_TRUE(soon([&] { return stop.isVisible(); }));
  type("Puissance k", "3");
  EXPECT_TRUE(soon([&] { return table().model()->rowCount() == 10 && !stop.isVisible(); }));

  type("Puissance k", "22");
  EXPECT_TRUE(soon([&] { return table().model()->rowCount() == 4; }));
  const auto offer = [&] {
    for (QPushButton* button : window.findChildren<QPushButton*>()) {
      if (button->isVisible() && button->text().startsWith("Compter les parts (environ ")) return button;
    }
    return static_cast<QPushButton*>(nullptr);
  };
  ASSERT_TRUE(soon([&] { return offer() != nullptr; }));
  QTest::mouseClick(offer(), Qt::LeftButton);
  EXPECT_TRUE(soon([&] { return progress.text().startsWith("Compte"); }));
  EXPECT_EQ(table().model()->rowCount(), 4) << "the list is there meanwhile";
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_NE(offer(), nullptr);
}

TEST(Export, WritesWholeFilesOrLeavesTheOldOnes) {
  Progress progress;
  const auto power = listedPower(3, progress);
  const QTemporaryDir folder;
  for (const auto& picture :
       {mapPicture(power, nullptr), ringPicture(power, 2), pathPicture(pathOf(3, "789", progress), true),
        tailsPicture(countedPower(*power, progress))}) {
    EXPECT_TRUE(QImage::fromData(pictureBytes(*picture, "png")).width() > 1'000);
    EXPECT_TRUE(pictureBytes(*picture, "pdf").trimmed().endsWith("%%EOF"));
    const QByteArray svg = pictureBytes(*picture, "svg");
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) xml.readNext();
    EXPECT_FALSE(xml.hasError());
    EXPECT_TRUE(svg.contains(picture->title().toUtf8()));
  }
  const QString name = folder.filePath("une liste.csv");
  EXPECT_EQ(writeFile(name, "ancien"), "");
  rlimit usual{};
  ::getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit small{1'000, usual.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_TRUE(writeFile(name, QByteArray(100'000, '7')).contains("le fichier est trop grand"));
  ::setrlimit(RLIMIT_FSIZE, &usual);
  QFile file(name);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), "ancien");
  EXPECT_TRUE(writeFile(folder.filePath("rien/liste.csv"), "x").contains("n’existe pas"));
}

}  // namespace
}  // namespace zelvion::testing
