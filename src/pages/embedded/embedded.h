#pragma once

// The files beside this one, as texts.
namespace zelvion::pages::embedded {

extern const char* const kColours;  ///< of pictures and pages, light and dark, as a style sheet
extern const char* const kStyle;    ///< of pages
extern const char* const kProof;    ///< what is in the body of the page
extern const char* const kChecker;  ///< a program in Python
extern const char* const kPowers;   ///< a table with a line of names

}  // namespace zelvion::pages::embedded
