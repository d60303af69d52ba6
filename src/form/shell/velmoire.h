#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "form/shell/desktop.h"
#include "form/shell/form.h"

namespace zelvion {

class DigitPower;
struct HighOrder;

/// A control whose text belongs to the form.
struct TextControl {
  std::string Text;
};

/// The main form: the texts of its controls and every operation of the program. The operations and the
/// handlers, one per button and menu item, are grouped by subsystem; each subsystem has its own folder.
///
/// A number is an `ent` text: decimal digits, most significant first, after a "-" if it is negative. An
/// operation that is given any other text throws Refusal before it changes anything; `click` turns that into
/// a message box.
class Velmoire : public Form {
 public:
  /// The form starts with its defaults. `desktop` must outlive it.
  explicit Velmoire(Desktop& desktop);

  // Window

  const FormTable& table() const override;
  std::string* text(std::string_view name) override;
  bool handles(std::string_view name) const override;
  /// Runs the handler of a control; whatever it throws becomes a message box.
  void click(std::string_view name) override;
  void change(std::string_view name) override;

  TextControl entier;         ///< p, as typed
  TextControl ordrek;         ///< k, as typed
  TextControl elem;           ///< the starting point of the itineraries, as typed
  TextControl RichTextBox1;   ///< the output area
  std::string ListePfixe;     ///< the text of the latest search for fixed points
  const std::string Caption;  ///< the title of the window

  // Shell: start, end, explanations, pages of the site

  void Form_Load();         ///< sets the defaults: k = 3, starting point 17, p = 789
  void Quitter_Click();     ///< closes the window, which ends the program
  void ordrek_Change();     ///< nothing: a new k takes effect at its next use
  void Command1_Click();    ///< empties the output area
  void Command14_Click();   ///< date and time
  void Principe_Click();    ///< explains the principle
  void mnuInfo_Click();     ///< shows the instructions
  void Command16_Click();   ///< opens the page on the theory
  void Command17_Click();   ///< opens the site
  void Command18_Click();   ///< opens the page on dynamical systems
  void mnuHtml_Click();     ///< opens the page of instructions
  void mnuApropos_Click();  ///< opens the about dialog

  // Decimal arithmetic

  /// The larger of two numbers: by sign, then length, then digits.
  static std::string Maxi(const std::string& ent1, const std::string& ent2);
  /// Splits a column value: returns its last character and stores the others in `iret`.
  static std::string ResuPartiel(const std::string& ires, std::string& iret);
  /// `ent` times `lk`, at least as wide as `ent`: the product by 0 is a row of zeros.
  static std::string MulCalcul(const std::string& ent, const std::int32_t& lk);
  /// Half of `ent`, truncated; empty for "1". Removes a leading "-" from the caller's `ent`.
  static std::string DemiCalcul(std::string& ent);
  /// Whether the last digit of `ent` is even.
  static bool Pair(const std::string& ent);
  /// `ent` + `lk`.
  static std::string PlusCalcul(const std::string& ent, const std::int32_t& lk);
  /// Sets `ent` to a number of 4,000 digits and reports that in a box.
  void Choixentree(std::string& ent);
  /// A third of `ent`, which has no sign, truncated; empty for "0", "1" and "2".
  static std::string TiersCalcul(const std::string& ent);
  /// Whether `ent`, which has no sign, is a positive multiple of 3.
  static bool Triple(const std::string& ent);
  /// `ent` - `lk`; an empty `ent` is reported and gives the empty text.
  std::string MoinsCalcul(const std::string& ent, const std::int32_t& lk);
  /// `ent` to the power `lk`; empty for an exponent below 1.
  static std::string PuisCalcul(const std::string& ent, const std::int32_t& lk);
  /// The smaller of two numbers.
  static std::string Mini(const std::string& ent1, const std::string& ent2);
  /// Whether `idiv` divides `ent`; `sort` receives the quotient if so, else the dividend. `idiv` becomes its
  /// absolute value.
  static bool DiviCalcul(const std::string& ent, std::int32_t& idiv, std::string& sort);
  /// `ent` - `lk`, where `ent` has no sign and 0 <= `lk` <= `ent`.
  static std::string MoinsCalcul0(const std::string& ent, const std::int32_t& lk);
  /// Half of `la` if `la` is even, else 0.
  static std::int32_t Demilong(const std::int32_t& la);
  /// The sum of two numbers without a sign, as wide as the longer one.
  static std::string Plusplus(const std::string& ent, const std::string& ent2);
  /// Whether two texts of digits have the same silhouette.
  static bool idem(const std::string& enti, const std::string& entj);

  // The transformation

  /// The image of `ent` under the power in `ordrek`.
  std::string sommepuis(const std::string& ent);
  void Command10_Click();  ///< replaces p by its image
  void Command6_Click();   ///< 1000 iterates of p
  void Command2_Click();   ///< itinerary of order 100
  void Command7_Click();   ///< itinerary of order 50

  // Cycles

  /// The cycle search of Command3; its result is empty.
  std::string CycleSyracuse();
  void Command3_Click();  ///< cycle search, 100,000 steps
  void Command4_Click();  ///< cycle search, 1,000,000 steps
  /// The list of the cycle of order `ord` through `ent`, and its extreme points; `ent` becomes the last one
  /// listed.
  std::string ListeCycle(std::string& ent, const std::int32_t& ord);
  /// A duration as days, hours, minutes and seconds; `Valeur` becomes the remaining seconds.
  static std::string ConvertirSecondes(std::int32_t& Valeur);

  // Fixed points

  void Command5_Click();  ///< search for the fixed points
  /// Tests a candidate, prefixed with its nines: a fixed point is added to `ListePfixe` and "pfixe.txt".
  void PfixeK(const std::string& ent);
  // Each enumerates every multiset of that many non-zero digits (boucle1: the ten digits) and passes those
  // that a sieve does not rule out to PfixeK.
  void boucle1();
  void boucle2();
  void boucle3();
  void boucle4();
  void boucle5();
  void boucle6();
  void boucle7();
  void boucle8();
  void boucle9();
  void boucle10();
  void boucle11();
  void boucle12();
  /// PfixeK for k = 57 and 41 leading nines; the outcome goes to the output area.
  void Pfixe57(const std::string& ent);
  /// The same for k = 58 and 46 nines.
  void Pfixe58(const std::string& ent);
  /// The same for k = 59 and 51 nines.
  void Pfixe59(const std::string& ent);
  /// The same for k = 60 and 56 nines.
  void Pfixe60(const std::string& ent);
  // Enumerate 13 to 16 digits for Pfixe57.
  void boucle13();
  void boucle14();
  void boucle15();
  void boucle16();
  /// Enumerates 13 digits for Pfixe58, and reports how many candidates there were.
  void boucle13K58();
  /// Enumerates 9 digits for Pfixe59.
  void boucle9K59();
  /// Enumerates 5 digits for Pfixe60.
  void boucle5k60();

  // Census and silhouettes

  void Command8_Click();  ///< length and census of p
  /// The counts of the digits 9 to 0 in `ent`: "(1, 1, 1, 0, 0, 0, 0, 0, 0, 0)" for 789.
  static std::string Nbchif(const std::string& ent);
  /// How often the character `stN` occurs in `ent`.
  static std::int16_t NbchifK(const std::string& ent, const std::string& stN);
  /// Whether `ent` has exactly 40 characters, of which at least seven are "9".
  static bool Test40et7x9(const std::string& ent);
  void Command15_Click();  ///< silhouette of p
  /// The counts of the digits 9 to 1 in `ent`.
  static std::string Sil(const std::string& ent);
  void Command13_Click();  ///< the silhouettes of 1 to 9999
  /// `ent` padded or truncated to 40 characters, seven of them 9s.
  static std::string Complete9(const std::string& ent1);
  /// The non-zero digits of `ent` in descending order.
  static std::string Classenbre(const std::string& ent);
  /// The sorted digit strings of 1 to 100: counted in a box, shown, and appended to "Listenbre.txt".
  std::string Listenbre();
  void Command11_Click();  ///< number of silhouettes with k digits
  /// The number of candidates of `m` digits, from a table; 0 outside it.
  static std::int32_t Cpteboucle(const std::int16_t& m);
  /// Runs the 23 nested loops and reports how many candidates they pass.
  void Cpteboucle23();

  // The catalogue

  void Command9_Click();   ///< the narcissistic numbers of order k
  void Command12_Click();  ///< the full catalogue

 private:
  class Records;
  struct CycleSearch;
  struct FixedPointSearch;

  // Message boxes.
  std::string standardTitle() const;
  void inform(std::string_view prompt, const std::string& title = std::string(kApplicationTitle));
  void informOfTime(const Moment& start, const Records& records);
  bool ask(std::string_view prompt, const std::string& title);

  // Files: a failed write is reported and the handler continues; a failed read ends it.
  std::string readText(const std::string& file);
  [[noreturn]] void refuseData(const std::string& file, const std::string& reason);
  static constexpr const char* kTooLarge = "il est trop grand pour la mémoire de cet ordinateur";

  /// The records that one press adds to a result file. Only the first failure is reported.
  class Records {
   public:
    Records(Velmoire& form, std::string_view file) : form_(form), file_(file) {}

    void append(const std::string& text);
    /// Flushes the records to disk; call it before a box announces them.
    void sync();
    /// Whether a record could not be written, which has been reported.
    bool failed() const { return told_; }
    /// How long the box with the failure stood open, which does not count as computation.
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
