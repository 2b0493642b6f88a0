// SPDX-License-Identifier: MIT
//
// Turns a table in CSV, whose first line names the columns, into XML, and a file of such XML back.
//
//     csv_xml < table.csv > table.xml
//     csv_xml table.xml > table.csv

#include <qrndom/QRNDOM.h>

#include <iomanip>
#include <iostream>
#include <vector>

// Cells in quotes may hold commas, line ends and doubled quotes. No cells: no more rows.
static std::vector<std::string> readRow(std::istream& csv) {
    std::vector<std::string> row(csv.peek() != EOF ? 1 : 0);
    bool isQuoted = false;
    for (char c = 0; csv.get(c) && (c != '\n' || isQuoted);) {
        if (c == '"' && (!isQuoted || csv.peek() != '"'))
            isQuoted = !isQuoted;
        else if (c == ',' && !isQuoted)
            row.emplace_back();
        else
            row.back() += c == '"' ? static_cast<char>(csv.get()) : c;
    }
    return row;
}

static PelDOM::Error toXml(std::istream& csv, PelDOMDocument table) {
    const std::vector<std::string> columns = readRow(csv);
    for (auto values = readRow(csv); !values.empty(); values = readRow(csv)) {
        PelDOMElement row = table.createElement("row");
        for (std::size_t i = 0; i < values.size() && i < columns.size(); ++i) {
            PelDOMElement cell = table.createElement("cell");
            cell.putAttribute("column", columns[i]);
            if (cell.setTextContent(values[i]) != PelDOM::SUCCESS)
                std::cerr << "XML has no such character: " << values[i] << "\n";
            row.appendChild(cell);
        }
        table.getDocumentElement().appendChild(row);
    }
    PelDOMWriter writer;
    writer.setIndent(1);
    return writer.writeStream(table, std::cout);
}

static void print(const PelDOMElement& cell, const PelString& text) {
    std::cout << (cell.getPreviousElement() ? "," : "") << std::quoted(text.toUtf8(), '"', '"')
              << (cell.getNextElement() ? "" : "\n");
}

static void toCsv(const PelDOMElement& table) {
    for (PelDOMElement cell : table.getChildElement("row").getChildElements("cell"))
        print(cell, cell.getAttribute("column"));
    for (PelDOMElement row : table.getChildElements("row"))
        for (PelDOMElement cell : row.getChildElements("cell"))
            print(cell, cell.getTextContent());
}

int main(int argc, char** argv) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    if (argc < 2)
        return toXml(std::cin, services.createDocument("table"));
    PelDOMReader reader;
    toCsv(reader.readFile(argv[1]).getDocumentElement());
    for (const PelDOMMessage& message : reader.getMessages())
        std::cerr << message.toLine() << "\n";
}
