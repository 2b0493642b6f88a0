// SPDX-License-Identifier: MIT
#pragma once

/// Everything that QRNDOM offers, in one header.

#include <qrndom/PelDOM.h>
#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMFiler.h>
#include <qrndom/PelDOMMessage.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>
#include <qrndom/PelDOMNodeListImp.h>
#include <qrndom/PelDOMRanges.h>
#include <qrndom/PelDOMReader.h>
#include <qrndom/PelDOMText.h>
#include <qrndom/PelDOMUtilites.h>
#include <qrndom/PelDOMWriter.h>
#include <qrndom/PelDOMXPath.h>
#include <qrndom/PelString.h>
#include <qrndom/export.h>
