// SPDX-License-Identifier: MIT
//
// Changes values in a configuration file, and nothing else: comments, white space, the order of
// attributes and the document type stay byte for byte.
//
//     edit_config FILE [PLACE VALUE]...
//
// A place is a path of element names below the root, with an attribute if need be. A last step that
// is missing is made; an empty value takes it out. So, with a copy of /etc/fonts/fonts.conf:
//
//     edit_config fonts.conf config/rescan/int 60 include@ignore_missing no

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <sstream>
#include <string>

namespace {

PelDOM::Error setAttribute(PelDOMElement& element, const std::string& name,
                           const std::string& value) {
    return value.empty() ? element.removeAttribute(name) : element.putAttribute(name, value);
}

// What comes first on the path is taken; a null handle does all that follows in vain.
PelDOM::Error setPlace(PelDOMDocument& document, const std::string& place,
                       const std::string& value) {
    const std::size_t at = place.find('@');
    std::istringstream path(place.substr(0, at));
    PelDOMElement parent, element = document.getDocumentElement();
    std::string step;
    while (std::getline(path, step, '/')) {
        parent = element;
        element = parent.getChildElement(step);
    }
    if (element)
        std::cout << "line " << element.getLine() << ", <" << element.getTagName() << ">\n";
    if (at != std::string::npos)
        return setAttribute(element, place.substr(at + 1), value);
    if (value.empty())
        return parent.removeChild(element);
    if (!element && parent) {
        element = document.createElement(step);
        parent.appendChild(element);
    }
    return element.setTextContent(value);
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2 || argc % 2 != 0) {
        std::cerr << "edit_config FILE [PLACE VALUE]...\n"
                     "  edit_config fonts.conf config/rescan/int 60 include@ignore_missing no\n";
        return 2;
    }
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER); // its type may be out of reach
    reader.setKeepSource(true);
    PelDOMDocument document = reader.readFile(argv[1]);
    if (!document) {
        std::cerr << reader.getMessages().back().toLine() << "\n";
        return 1;
    }
    for (int i = 2; i < argc; i += 2)
        if (setPlace(document, argv[i], argv[i + 1]) != PelDOM::SUCCESS) {
            std::cerr << argv[i] << ": no such place in " << argv[1] << "\n";
            return 1;
        }

    PelDOMWriter writer;
    writer.setKeepLayout(true);
    const PelDOM::Error written = writer.writeFile(document, argv[1]);
    std::cerr << writer.getMessage();
    return written == PelDOM::SUCCESS ? 0 : 1;
} catch (...) {
    std::cerr << "a place has a name that XML forbids\n"; // createElement throws
    return 1;
}
