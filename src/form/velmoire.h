#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "form/desktop.h"
#include "form/form.h"

namespace zelvion {

class DigitPower;
struct HighOrder;

/// A control whose text belongs to the form.
struct TextControl {
  std::string Text;
};

/// The main form: the texts of its controls, and every operation of the program. The operations stand here by
/// subsystem, and each subsystem's are implemented in a file of its own.
///
/// A number is an `ent` text: decimal digits, the highest first, with one "-" in front if it is negative. An
/// operation that meets a text it cannot work on throws Refusal, which `click` turns into a message
/// box; it has changed nothing from that moment on.
class Velmoire : public Form {
 public:
  /// The form takes its defaults at once. `desktop` has to outlive it.
  explicit Velmoire(Desktop& desktop);

  // Window

  const FormTable& table() const override;
  std::string* text(std::string_view name) override;
  bool handles(std::string_view name) const override;
  /// Runs the handler of a press; whatever it throws becomes a message box.
  void click(std::string_view name) override;
  void change(std::string_view name) override;

  TextControl entier;         ///< p, as typed
  TextControl ordrek;         ///< k, as typed
  TextControl elem;           ///< the start point of the itineraries, as typed
  TextControl RichTextBox1;   ///< the output area
  std::string ListePfixe;     ///< the text of the latest search for fixed points
  const std::string Caption;  ///< the title of the window

  // Handlers: one for each button and menu item

  void Form_Load();         ///< sets the defaults: k = 3, start point 17, p = 789
  void Quitter_Click();     ///< closes the window, which ends the program
  void ordrek_Change();     ///< nothing: a new k takes effect at its next use
  void Command1_Click();    ///< empties the output area
  void Command2_Click();    ///< itinerary of order 100
  void Command3_Click();    ///< cycle search, 100,000 steps
  void Command4_Click();    ///< cycle search, 1,000,000 steps
  void Command5_Click();    ///< search for the fixed points
  void Command6_Click();    ///< 1000 iterates of p
  void Command7_Click();    ///< itinerary of order 50
  void Command8_Click();    ///< length and census of p
  void Command9_Click();    ///< the narcissistic numbers of order k
  void Command10_Click();   ///< p goes to its image
  void Command11_Click();   ///< number of silhouettes with k digits
  void Command12_Click();   ///< the full catalogue
  void Command13_Click();   ///< the silhouettes of 1 to 9999
  void Command14_Click();   ///< date and time
  void Command15_Click();   ///< silhouette of p
  void Command16_Click();   ///< opens the page on the theory
  void Command17_Click();   ///< opens the site
  void Command18_Click();   ///< opens the page on dynamical systems
  void Principe_Click();    ///< explains the principle
  void mnuApropos_Click();  ///< opens the about dialog
  void mnuInfo_Click();     ///< shows the instructions
  void mnuHtml_Click();     ///< opens the page of instructions

  // Decimal arithmetic

  /// The greater of two numbers: by sign, then length, then digits.
  static std::string Maxi(const std::string& ent1, const std::string& ent2);
  /// Splits the text of a column value: returns its last character and leaves the others in `iret`.
  static std::string ResuPartiel(const std::string& ires, std::string& iret);
  /// `ent` times `lk`, at least as wide as `ent`: the product by 0 is a row of zeros.
  static std::string MulCalcul(const std::string& ent, const std::int32_t& lk);
  /// Half of `ent`, truncated; empty for "1". A leading "-" is taken off the caller's `ent`.
  static std::string DemiCalcul(std::string& ent);
  /// Whether the last digit of `ent` is even.
  static bool Pair(const std::string& ent);
  /// `ent` + `lk`.
  static std::string PlusCalcul(const std::string& ent, const std::int32_t& lk);
  /// Fills `ent` with a number of 4,000 digits and tells so.
  void Choixentree(std::string& ent);
  /// A third of `ent`, which has no sign, truncated; empty for "0", "1" and "2".
  static std::string TiersCalcul(const std::string& ent);
  /// Whether `ent`, which has no sign, is a multiple of 3 above 2.
  static bool Triple(const std::string& ent);
  /// `ent` - `lk`; an empty `ent` is reported and gives the empty text.
  std::string MoinsCalcul(const std::string& ent, const std::int32_t& lk);
  /// `ent` to the power `lk`; empty for an exponent below 1.
  static std::string PuisCalcul(const std::string& ent, const std::int32_t& lk);
  /// The lesser of two numbers.
  static std::string Mini(const std::string& ent1, const std::string& ent2);
  /// Whether `idiv`, which comes back positive, divides `ent`; `sort` receives the quotient or else the
  /// dividend.
  static bool DiviCalcul(const std::string& ent, std::int32_t& idiv, std::string& sort);
  /// `ent` - `lk` for an `ent` without a sign that is not less than `lk`, itself not negative.
  static std::string MoinsCalcul0(const std::string& ent, const std::int32_t& lk);
  /// Half of `la` if it is even, else 0.
  static std::int32_t Demilong(const std::int32_t& la);
  /// The sum of two numbers without a sign, as wide as the longer one.
  static std::string Plusplus(const std::string& ent, const std::string& ent2);
  /// Whether two texts of digits have the same silhouette.
  static bool idem(const std::string& enti, const std::string& entj);

  // The transformation

  /// The image of `ent` under the power in `ordrek`.
  std::string sommepuis(const std::string& ent);

  // Cycles

  /// The list of the cycle of order `ord` through `ent`, and its extreme points; `ent` becomes the last one
  /// listed.
  std::string ListeCycle(std::string& ent, const std::int32_t& ord);
  /// The cycle search of Command3; its result is empty.
  std::string CycleSyracuse();
  /// A number of seconds in days, hours, minutes and seconds; `Valeur` keeps the seconds that remain.
  static std::string ConvertirSecondes(std::int32_t& Valeur);

  // Census and silhouettes

  /// The counts of the digits 9 to 0 in `ent`: "(1, 1, 1, 0, 0, 0, 0, 0, 0, 0)" for 789.
  static std::string Nbchif(const std::string& ent);
  /// Whether `ent` has exactly 40 characters, at least seven of them "9".
  static bool Test40et7x9(const std::string& ent);
  /// How many characters of `ent` are the character `stN`.
  static std::int16_t NbchifK(const std::string& ent, const std::string& stN);
  /// `ent` filled up, or cut, to 40 characters with seven 9s.
  static std::string Complete9(const std::string& ent1);
  /// The non-zero digits of `ent` in descending order.
  static std::string Classenbre(const std::string& ent);
  /// The sorted digit strings of 1 to 100: told, shown and appended to "Listenbre.txt".
  std::string Listenbre();
  /// Walks the 23 nested loops and tells their number.
  void Cpteboucle23();
  /// The number of candidates of `m` digits, from a table; 0 where it has none.
  static std::int32_t Cpteboucle(const std::int16_t& m);
  /// The counts of the digits 9 to 1 in `ent`.
  static std::string Sil(const std::string& ent);

  // Fixed points

  // Each tests every multiset of so many non-zero digits, and PfixeK those that can be fixed; boucle1 the ten
  // digits.
  void boucle1();
  void boucle2();
  void boucle5();
  void boucle6();
  void boucle8();
  void boucle7();
  /// PfixeK for k = 58 and 46 nines in front; the outcome goes to the output area.
  void Pfixe58(const std::string& ent);
  /// The same for k = 57 and 41 nines.
  void Pfixe57(const std::string& ent);
  void boucle4();
  void boucle3();
  void boucle9();
  void boucle10();
  void boucle11();
  /// Tests a candidate, nines in front of it: a fixed point goes to `ListePfixe` and "pfixe.txt".
  void PfixeK(const std::string& ent);
  void boucle12();
  /// 13 digits for Pfixe58, and tells their number.
  void boucle13K58();
  /// The same as Pfixe58 for k = 60 and 56 nines.
  void Pfixe60(const std::string& ent);
  /// 5 digits for Pfixe60.
  void boucle5k60();
  /// The same as Pfixe58 for k = 59 and 51 nines.
  void Pfixe59(const std::string& ent);
  /// 9 digits for Pfixe59.
  void boucle9K59();
  // 13 to 16 digits for Pfixe57.
  void boucle13();
  void boucle14();
  void boucle15();
  void boucle16();

 private:
  class Records;
  struct CycleSearch;
  struct FixedPointSearch;

  // Message boxes.
  std::string standardTitle() const;
  void inform(std::string_view prompt, const std::string& title = std::string(kApplicationTitle));
  void informOfTime(const Moment& start, const Records& records);
  bool ask(std::string_view prompt, const std::string& title);

  // Files: what cannot be written is told, and the handler goes on; what cannot be read ends it.
  std::string readText(const std::string& file);
  [[noreturn]] void refuseData(const std::string& file, const std::string& reason);
  static constexpr const char* kTooLarge = "il est trop grand pour la mémoire de cet ordinateur";

  /// The records that one press adds to a result file. The first failure is told in a box, the others are
  /// not.
  class Records {
   public:
    Records(Velmoire& form, std::string_view file) : form_(form), file_(file) {}

    void append(const std::string& text);
    /// Has what was appended on the disk: to be called before a box announces it.
    void sync();
    /// Whether a record is not in its file, which was told.
    bool failed() const { return told_; }
    /// How long the box that told a failure stood open: no time of computation.
    std::int64_t secondsInBox() const { return secondsInBox_; }

   private:
    void tell(const std::error_code& error);

    Velmoire& form_;
    const std::string file_;
    bool written_ = false;
    bool told_ = false;
    std::int64_t secondsInBox_ = 0;
  };

  void letGoOfOutput() noexcept;

  void itinerary(int limit, const std::string& heading);
  void searchCycle(const CycleSearch& search);
  void showReport(const CycleSearch& search, std::string& report);
  void runCascade(FixedPointSearch& search);
  void enumerate(FixedPointSearch& search, int first, int last);
  void enumerate(int digits);
  void test(FixedPointSearch& search, const std::string& ent);
  std::int32_t enumerateHigh(int digits, const HighOrder& order);
  void testHigh(const HighOrder& order, const std::string& ent);
  void testHigh(const HighOrder& order, DigitPower& power, Records& records, const std::string& ent);

  Desktop& desktop_;
};

}  // namespace zelvion
