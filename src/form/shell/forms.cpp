#include "form/shell/forms.h"

#include <array>

namespace zelvion {
namespace {

constexpr Font kNormal{33, false, false};
constexpr Font kBold{33, true, false};
constexpr Font kBoldItalic{33, true, true};
constexpr Font kOutput{39, true, false};
constexpr Font kLarge{54, false, false};
constexpr Font kLargeBold{54, true, false};

// clang-format off
constexpr std::array<Control, 26> kMainControls = {{
    {"entier", Kind::MultilineTextBox, "", "Nombre p initial choisi", 120, 240, 6615, 615, Colour::None, false, kBold},
    {"Quitter", Kind::Button, "&Quitter", "", 5760, 7080, 855, 495, Colour::None, false, kBoldItalic},
    {"Principe", Kind::Button, "&PRINCIPE (détails sur la page théorique)", "", 120, 1440, 1455, 675, Colour::None, false, kNormal},
    {"Label1", Kind::Label, "Nombre p initial choisi:", "", 120, 0, 3015, 495, Colour::None, false, kBold, "entier"},
    {"Label2", Kind::Label, "Puissance k:", "", 840, 960, 1215, 495, Colour::None, false, kBold, "ordrek"},
    {"ordrek", Kind::TextBox, "", "Puissance k", 2040, 960, 1095, 375, Colour::None, false, kBold},
    {"Command2", Kind::Button, "100  itérés  de:", "", 120, 3240, 2055, 615, Colour::Yellow, true, kBold},
    {"elem", Kind::TextBox, "", "Point de départ des itinéraires", 2280, 3480, 4575, 375, Colour::None, false, kBold},
    {"Command3", Kind::Button, "Recherche de CYCLES  (100.000 itérations)", "", 3840, 1680, 2775, 495, Colour::Yellow, true, kBold},
    {"Command4", Kind::Button, "Recherche de CYCLES  (1.000.000 itérations)", "", 3840, 2160, 2775, 495, Colour::Yellow, true, kBold},
    {"Command6", Kind::Button, "Itération de p (1000)", "", 5040, 840, 1695, 495, Colour::Yellow, true, kBold},
    {"Command7", Kind::Button, "50  itérés de:", "", 120, 2880, 2055, 495, Colour::Yellow, true, kBold},
    {"RichTextBox1", Kind::RichTextBox, "", "Fenêtre d'édition", 600, 3960, 6255, 2295, Colour::None, false, kOutput},
    {"Command5", Kind::Button, "Recherche des POINTS FIXES  (si k chiffres, nombres narcissiques parfaits)", "", 3600, 2640, 3255, 735, Colour::Yellow, true, kBold},
    {"Command8", Kind::Button, "Nombre de chiffres de p ", "", 4800, 0, 2055, 255, Colour::None, false, kNormal},
    {"Command10", Kind::Button, "Transformé de p", "", 3360, 0, 1455, 255, Colour::Yellow, true, kNormal},
    {"Command13", Kind::Button, "Liste des silhouettes de 1 à 9999", "", 3240, 840, 1695, 495, Colour::None, false, kNormal},
    {"Command9", Kind::Button, "Liste des nombres narcissiques parfaits d'ordre k  ", "", 480, 6600, 4095, 495, Colour::None, false, kBoldItalic},
    {"Command11", Kind::Button, "Nombre de silhouettes à  k chiffres", "", 2040, 2280, 1455, 615, Colour::None, false, kNormal},
    {"Command12", Kind::Button, "Tous les nombres narcissiques parfaits (k=1 à k=39)", "", 480, 7080, 4095, 495, Colour::None, false, kBoldItalic},
    {"Command14", Kind::Button, "Date et Heure", "", 5760, 6360, 1215, 615, Colour::Red, false, kBoldItalic},
    {"Command15", Kind::Button, "Silhouette de p", "", 1920, 1800, 1695, 375, Colour::None, false, kNormal},
    {"Command16", Kind::Button, "Vers la page théorique sur les transformations velmoires", "", 1680, 1320, 5055, 375, Colour::Mauve, true, kBold},
    {"Command17", Kind::Button, "Vers le site TOLQUE", "", 4680, 6600, 855, 735, Colour::Mauve, true, kBold},
    {"Command18", Kind::Button, "Vers la page des systèmes dynamiques", "", 0, 2160, 1935, 735, Colour::Mauve, true, kBold},
    {"Command1", Kind::Button, "Vider la fenêtre d'édition", "", 480, 6360, 4095, 255, Colour::None, false, kBoldItalic},
}};

constexpr std::array<MenuItem, 3> kMainMenu = {{
    {"mnuApropos", "&A propos"},
    {"mnuInfo", "&Information"},
    {"mnuHtml", "&Fichier web mode d'emploi"},
}};

constexpr std::array<Control, 8> kAboutControls = {{
    {"lblHeading", Kind::CentredLabel, "", "", 0, 240, 4695, 855, Colour::None, false, kLarge},
    {"lblApplication", Kind::CentredLabel, "", "", 120, 960, 4695, 735, Colour::None, false, kLargeBold},
    {"lblCopyright", Kind::CentredLabel, "", "", 120, 1920, 4695, 615, Colour::None, false, kNormal},
    {"cmdOK", Kind::Button, "Fermer", "", 3240, 2640, 1095, 495, Colour::None, false, kBoldItalic},
    {"Command1", Kind::Button, "La page des transformations velmoires sur les entiers (site TOLQUE)", "", 120, 2640, 3015, 615, Colour::Magenta, true, kBold},
    {"Command2", Kind::Button, "La page des systèmes dynamiques (site TOLQUE)", "", 120, 3360, 4455, 495, Colour::Magenta, true, kBold},
    {"Line1", Kind::Rule, "", "", 480, 1680, 3480, 0},
    {"Line2", Kind::Rule, "", "", 480, 2400, 3480, 0},
}};
// clang-format on

}  // namespace

const FormTable kMainForm = {
    "Velmoire",    "Transformations velmoires. Nombres narcissiques parfaits (Quenoril)  2006-2007",
    7215,          7725,
    kMainControls, "mnuAide",
    "&?",          kMainMenu};

const FormTable kAboutForm = {"About", "À propos", 4680, 4050, kAboutControls};

}  // namespace zelvion
