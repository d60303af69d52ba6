#include "form/shell/site.h"
#include "form/shell/velmoire.h"

namespace zelvion {
namespace {

// The wording of both texts is settled, its odd spellings and missing blanks included.
// clang-format off
constexpr std::string_view kPrinciple =
    "Les transformations velmoires sur l'ensemble des entiers sont définies de la manière suivante. Pour un nombre initial p choisi, on lui associe la somme des puissances k de tous ses chiffres."
    "Par exemple pour p =27 et k=3, la transformation donne 2*2*2 + 7*7*7 = 351 comme premier itéré de 27."
    "On répète cette opération et si l'itération correspondante converge, on détermine le point fixe ou le cycle obtenu.\r\n"
    "On cherche en particulier parmi les points fixes de ces itérations ceux qui ont exactement k chiffres, appelés nombres narcissiques parfaits ou nombres d'Amstrong ou PPDI.\r\n"
    "Les cycles obtenus avec Recherche de CYCLES (100.000 itérations) sont écrits dans le fichier velmoire.txt."
    "Les cycles obtenus avec Recherche de CYCLES (1.000.000 itérations) sont écrits dans le fichier cycle.txt."
    "Les points fixes obtenus avec Recherche des POINTS FIXES (si k chiffres, nombres narcissiques parfaits) sont écrits dans le fichier pfixe.txt.";

constexpr std::string_view kInstructions =
    "Cet exécutable s'appelle zelvion car il généralise les transformations définissant les nombres zelvion et malzelvion, permet de générer des nombres narcissiques et correspond à des transformations dites velmoires à cause de leur caractère inéluctablement convergent.\r\n"
    "Choisissez une valeur k entière positive (puissance).\r\n"
    "Le bouton ITERATION de p permet de cacluler les 1000 itérés de votre entier initial pour la transformation choisie.\r\n"
    "Le bouton RECHERCHE de CYCLES (100.000 itérations) permet de trouver l'éventuel cycle vers lequel converge l'itération issue de votre p initial (avec 100.000 itérations et demande de continuation toutes les 1000).\r\n"
    "Le bouton RECHERCHE de CYCLES (1.000.000 itérations)permet de trouver l'éventuel cycle vers lequel converge l'itération issue de votre p initial (avec 1.000.000 itérations et demande de continuation toutes les 10.000).\r\n"
    "Le bouton RECHERCHE de POINTS FIXES permet de trouver les éventuels points fixes de l'itération correspondant à la puissance k choisie; ceux qui possédent exactement k chiffres sont appelés nombres narcissiques parfaits ou nombres d'Amstrong ou PPDI ou ....\r\n"
    "Les boutons jaunes font des calculs, les boutons mauves renvoient sur des pages Web.\r\n"
    "ATTENTION les calculs associés à ce bouton peuvent être longs ou même très longs dès que la puissance k est supérieure à 6 ou 7...\r\n"
    "Voyez la page théorique sur les transformations velmoires";
// clang-format on

}  // namespace

void Velmoire::Principe_Click() { inform(kPrinciple, standardTitle()); }

void Velmoire::mnuInfo_Click() { RichTextBox1.Text = kInstructions; }

void Velmoire::Command14_Click() {
  inform(desktop_.now().text(), " Transformations velmoires sur les entiers");
}

void Velmoire::Command16_Click() { openPage(desktop_, kTheoryPage); }

void Velmoire::Command17_Click() { openPage(desktop_, kHomePage); }

void Velmoire::Command18_Click() { openPage(desktop_, kDynamicsPage); }

void Velmoire::mnuHtml_Click() { openPage(desktop_, kInstructionsPage); }

}  // namespace zelvion
