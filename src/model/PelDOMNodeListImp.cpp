// SPDX-License-Identifier: MIT
#include <qrndom/PelDOMNodeListImp.h>

PelDOMNodeListImp::PelDOMNodeListImp() = default;

PelDOMNodeListImp::PelDOMNodeListImp(const PelDOMNodeListImp& /*other*/) = default;

PelDOMNodeListImp& PelDOMNodeListImp::operator=(const PelDOMNodeListImp& /*other*/) = default;

PelDOMNodeListImp::~PelDOMNodeListImp() = default;
