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
        if (c == '"' && isQuoted && csv.peek() == '"')
            row.back() += static_cast<char>(csv.get());
        else if (c == '"')
            isQuoted = !isQuoted;
        else if (c == ',' && !isQuoted)
            row.emplace_back();
        else
            row.back() += c;
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

static void toCsv(const PelDOMElement& table) {
    const auto print = [](const PelDOMElement& row, auto textOf) {
        for (PelDOMElement cell : row.getChildElements("cell"))
            std::cout << (cell.getPreviousElement() ? "," : "")
                      << std::quoted(textOf(cell).toUtf8(), '"', '"');
        std::cout << "\n";
    };
    print(table.getChildElement("row"),
          [](const auto& cell) { return cell.getAttribute("column"); });
    for (PelDOMElement row : table.getChildElements("row"))
        print(row, [](const auto& cell) { return cell.getTextContent(); });
}

int main(int argc, char** argv) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    if (argc < 2)
        return toXml(std::cin, services.createDocument("table"));
    toCsv(services.readDocument(argv[1]).getDocumentElement());
    std::cerr << PelDOMUtilites::getLastReadMessage();
}
