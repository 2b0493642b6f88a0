// SPDX-License-Identifier: MIT
#include <qrndom/PelDOM.h>

PelDOM::Error PelDOM::checkString(const PelString& string, int /*kind*/) {
    return string.isEmpty() != 0 ? INVALID_VALUE : SUCCESS;
}
