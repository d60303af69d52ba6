#pragma once

#include "form/shell/form.h"

/// The two forms of the program as tables.
namespace zelvion {

extern const FormTable kMainForm;
extern const FormTable kAboutForm;

}  // namespace zelvion
