#include <regex>

#include "form/form_test.h"
#include "form/shell/about.h"

namespace zelvion {
namespace {

using Shell = testing::FormTest;

TEST_F(Shell, StartsWithItsDefaults) {
  EXPECT_EQ(form_.ordrek.Text + "," + form_.elem.Text + "," + form_.entier.Text, "3,17,789");
  EXPECT_EQ(form_.RichTextBox1.Text + form_.ListePfixe, "");
  EXPECT_EQ(form_.Caption, "Transformations velmoires. Nombres narcissiques parfaits (Quenoril)  2006-2007");
  form_.RichTextBox1.Text = "old";
  press("Command1", {});
  EXPECT_EQ(form_.RichTextBox1.Text, "");
  EXPECT_EQ(press("Command14")[0], " Transformations velmoires sur les entiers|22/11/2026 20:30:00");
  press("Quitter", {});
  EXPECT_EQ(desktop_.unloaded, std::vector<Form*>{&form_});
}

TEST_F(Shell, EveryControlHasItsHandlerOrText) {
  About about(desktop_);
  std::string texts;
  for (Form* form : std::initializer_list<Form*>{&form_, &about}) {
    for (const Control& control : form->table().controls) {
      EXPECT_EQ(form->handles(control.name), control.kind == Kind::Button) << control.name;
      if (form->text(control.name) != nullptr) texts += std::string(control.name) + " ";
    }
    for (const MenuItem& item : form->table().menu) EXPECT_TRUE(form->handles(item.name)) << item.name;
  }
  EXPECT_EQ(texts, "entier ordrek elem RichTextBox1 lblHeading lblApplication lblCopyright ");
  EXPECT_EQ(form_.table().controls.size() + form_.table().menu.size(), 26U + 3U);
}

TEST_F(Shell, PagesOpenAndFailuresAreTold) {
  for (const char* name : {"Command16", "Command17", "Command18", "mnuHtml"}) press(name, {});
  const char* paths[] = {"/mathfon/velmoire.php", "/index.php", "/systdyn.php", "/zelvion.php"};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_TRUE(desktop_.pages.at(i).ends_with(paths[i])) << paths[i];
  desktop_.hasBrowser = false;
  const std::string box = press("Command16")[0];
  EXPECT_TRUE(box.starts_with("zelvion|") && box.find("/mathfon/velmoire.php n’a") != box.npos) << box;
  desktop_.onModal = [this](Form& about) {
    desktop_.expect(Answer::Ok);
    about.click("Command1");
  };
  form_.click("mnuApropos");
  EXPECT_EQ(shown()[0], box);
}

TEST_F(Shell, Explanations) {
  const std::string principle =
      R"(Les transformations velmoires sur l'ensemble des entiers sont définies de la manière suivante. Pour un nombre initial p choisi, on lui associe la somme des puissances k de tous ses chiffres.Par exemple pour p =27 et k=3, la transformation donne 2*2*2 + 7*7*7 = 351 comme premier itéré de 27.On répète cette opération et si l'itération correspondante converge, on détermine le point fixe ou le cycle obtenu.
On cherche en particulier parmi les points fixes de ces itérations ceux qui ont exactement k chiffres, appelés nombres narcissiques parfaits ou nombres d'Amstrong ou PPDI.
Les cycles obtenus avec Recherche de CYCLES (100.000 itérations) sont écrits dans le fichier velmoire.txt.Les cycles obtenus avec Recherche de CYCLES (1.000.000 itérations) sont écrits dans le fichier cycle.txt.Les points fixes obtenus avec Recherche des POINTS FIXES (si k chiffres, nombres narcissiques parfaits) sont écrits dans le fichier pfixe.txt.)";
  const std::string instructions =
      R"(Cet exécutable s'appelle zelvion car il généralise les transformations définissant les nombres zelvion et malzelvion, permet de générer des nombres narcissiques et correspond à des transformations dites velmoires à cause de leur caractère inéluctablement convergent.
Choisissez une valeur k entière positive (puissance).
Le bouton ITERATION de p permet de cacluler les 1000 itérés de votre entier initial pour la transformation choisie.
Le bouton RECHERCHE de CYCLES (100.000 itérations) permet de trouver l'éventuel cycle vers lequel converge l'itération issue de votre p initial (avec 100.000 itérations et demande de continuation toutes les 1000).
Le bouton RECHERCHE de CYCLES (1.000.000 itérations)permet de trouver l'éventuel cycle vers lequel converge l'itération issue de votre p initial (avec 1.000.000 itérations et demande de continuation toutes les 10.000).
Le bouton RECHERCHE de POINTS FIXES permet de trouver les éventuels points fixes de l'itération correspondant à la puissance k choisie; ceux qui possédent exactement k chiffres sont appelés nombres narcissiques parfaits ou nombres d'Amstrong ou PPDI ou ....
Les boutons jaunes font des calculs, les boutons mauves renvoient sur des pages Web.
ATTENTION les calculs associés à ce bouton peuvent être longs ou même très longs dès que la puissance k est supérieure à 6 ou 7...
Voyez la page théorique sur les transformations velmoires)";
  const std::regex lineEnd("\n");
  form_.ordrek.Text = "";
  EXPECT_EQ(press("Principe")[0], standard() + std::regex_replace(principle, lineEnd, "\r\n"));
  press("mnuInfo", {});
  EXPECT_EQ(form_.RichTextBox1.Text, std::regex_replace(instructions, lineEnd, "\r\n"));
}

TEST_F(Shell, AboutDialog) {
  About about(desktop_);
  about.Application("A");  // the first use loads it
  EXPECT_EQ(about.lblApplication.Caption + about.lblHeading.Caption + about.lblCopyright.Caption,
            "A- Heading -- Copyright -");
  ASSERT_TRUE(about.position());
  EXPECT_EQ(about.position()->x, (19'200 - 4'680) / 2);
  EXPECT_EQ(about.position()->y, (10'800 - 4'050) / 2);
  about.click("cmdOK");
  EXPECT_EQ(desktop_.unloaded, std::vector<Form*>{&about});

  desktop_.onModal = [&](Form& form) {
    EXPECT_EQ(*form.text("lblApplication"), "NOMBRES NARCISSIQUES PARFAITS");
    EXPECT_EQ(*form.text("lblHeading"), "Itérations sur les entiers: TRANSFORMATIONS VELMOIRES.");
    EXPECT_TRUE(form.text("lblCopyright")->starts_with("Copyright © ")) << *form.text("lblCopyright");
    form.click("Command1");
    form.click("Command2");
  };
  press("mnuApropos", {});
  EXPECT_EQ(desktop_.shown.size(), 1U);
  EXPECT_TRUE(desktop_.pages.at(0).ends_with("/velmoire.php") &&
              desktop_.pages.at(1).ends_with("/systdyn.php"));
}

}  // namespace
}  // namespace zelvion
