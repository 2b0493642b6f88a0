// SPDX-License-Identifier: MIT
//
// Changes options in a configuration file. All else in the file stays, comments included.
//
//     edit_config FILE [NAME VALUE]...      (an empty value takes the option out)

#include <qrndom/QRNDOM.h>

#include <iostream>

int main(int argc, char** argv) {
    PelDOMReader reader;
    PelDOMDocument document = reader.readFile(argv[1]);
    if (!document) {
        std::cerr << reader.getMessages().back().toLine() << "\n";
        return 1;
    }
    PelDOMElement config = document.getDocumentElement();
    for (int i = 2; i + 1 < argc; i += 2) {
        const PelString name = argv[i], value = argv[i + 1];
        PelDOMElement option = config.getChildElement("option");
        while (option && option.getAttribute("name") != name)
            option = option.getNextElement("option");
        if (!option) {
            option = document.createElement("option");
            option.setAttribute("name", name);
            config.appendChild(option);
        }
        option.setAttribute("value", value);
        if (value.isEmpty())
            config.removeChild(option);
    }
    config.setAttribute("revision", config.getAttributeOr("revision", 0) + 1);

    PelDOMWriter writer;
    writer.setIndent(2);
    const PelDOM::Error written = writer.writeFile(document, argv[1]);
    std::cerr << writer.getMessage();
    return written;
}
