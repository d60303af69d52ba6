#pragma once

#include "platform/form.h"

/// The two forms of the program as tables.
namespace zelvion {

extern const FormTable kMainForm;
extern const FormTable kAboutForm;

}  // namespace zelvion
