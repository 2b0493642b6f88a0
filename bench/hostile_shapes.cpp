// SPDX-License-Identifier: MIT
#include "hostile_shapes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace {

// Names are made with the fixed hash of the parser in mind: 38 times what was, and the unit.
std::uint64_t hashOf(const std::string& name) {
    std::uint64_t hash = static_cast<unsigned char>(name[0]);
    for (std::size_t i = 1; i < name.size(); ++i)
        hash = hash * 38 + (hash >> 24) + static_cast<unsigned char>(name[i]);
    return hash;
}

// Different names of one hash: three pairs of letters that the hash does not tell apart.
std::string equal(std::size_t number) {
    static const std::array<const char*, 3> pairs = {"Az", "BT", "C."};
    std::string name;
    for (int i = 0; i < 12; ++i, number /= 3)
        name += pairs[number % 3];
    return name;
}

std::string plain(std::size_t number) {
    return "n" + std::to_string(number);
}

// Different names whose hashes leave no remainder. Four letters at the end make up for the rest:
// what they add is the same for most names, and hence known.
class Divisible {
public:
    explicit Divisible(std::uint64_t hashPlaces) : places(hashPlaces), endings(places) {
        for (const char a : letters)
            for (const char b : letters)
                for (const char c : letters)
                    for (const char d : letters)
                        endings[added(a, b, c, d) % places] = {a, b, c, d};
    }

    std::string operator()(std::size_t number) {
        while (names.size() <= number) {
            std::string name = "n";
            for (std::size_t rest = ++tried; rest > 0; rest /= letters.size())
                name += letters[rest % letters.size()];
            const std::uint64_t lacking = places - hashOf(name + "aaaa") % places;
            name += endings[(lacking + added('a', 'a', 'a', 'a')) % places];
            if (hashOf(name) % places == 0)
                names.push_back(name);
        }
        return names[number];
    }

private:
    static std::uint64_t added(char a, char b, char c, char d) {
        return ((static_cast<std::uint64_t>(a) * 38 + static_cast<std::uint64_t>(b)) * 38 +
                static_cast<std::uint64_t>(c)) *
                   38 +
               static_cast<std::uint64_t>(d);
    }

    const std::string letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    const std::uint64_t places;
    std::vector<std::string> endings;
    std::vector<std::string> names;
    std::size_t tried = 0;
};

std::string leaving(std::size_t number, std::uint64_t places) {
    static std::map<std::uint64_t, Divisible> known;
    return known.try_emplace(places, places).first->second(number);
}

using Name = std::function<std::string(std::size_t)>;
const Name modulo257 = [](std::size_t i) { return leaving(i, 257); };
const Name modulo193 = [](std::size_t i) { return leaving(i, 193); };
const Name moduloGrown = [](std::size_t i) { return leaving(i, 30 * 2048 - 1); };

// A piece again and again, up to so many bytes, with the repetition's number for $ and a name for
// @.
std::string fill(std::size_t bytes, const std::string& piece, const Name& name = plain,
                 std::size_t first = 0) {
    std::string all;
    for (std::size_t i = first; all.size() < bytes; ++i) {
        const std::string own = piece.find('@') == piece.npos ? "" : name(i);
        for (const char c : piece)
            c == '$' ? all += std::to_string(i) : c == '@' ? all += own : all += c;
    }
    return all;
}

std::string times(std::size_t count, const std::string& piece, const Name& name = plain) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += fill(1, piece, name, i);
    return all;
}

// Numbers that fall, at one width: names in descending order.
std::string falling(std::size_t number) {
    std::string digits = std::to_string(99'999'999 - number);
    return "n" + std::string(8 - digits.size(), '0') + digits;
}

HostileFiles one(std::string text) {
    return {{"main.xml", std::move(text)}};
}

HostileFiles subset(const std::string& declarations, const std::string& content = "<a/>",
                    const std::string& model = "ANY") {
    return one("<!DOCTYPE a [<!ELEMENT a " + model + ">" + declarations + "]>" + content);
}

HostileFiles inA(const std::string& content) {
    return one("<a>" + content + "</a>");
}

// Halves of the bytes.
using Make = std::function<HostileFiles(std::size_t)>;

Make external(const std::string& part, const std::string& reference) {
    return [=](std::size_t bytes) {
        HostileFiles files =
            subset("<!ENTITY e SYSTEM 'part.xml'>", "<a>" + fill(bytes, reference) + "</a>");
        files["part.xml"] = part;
        return files;
    };
}

std::vector<HostileShape> make() {
    std::vector<HostileShape> shapes;
    const auto add = [&](const char* name, Make shape) {
        shapes.push_back({name, std::move(shape)});
    };

    // Without a document type.
    const auto content = [&](const char* name, const std::string& piece,
                             const Name& names = plain) {
        add(name, [=](std::size_t bytes) { return inA(fill(bytes, piece, names)); });
    };
    content("elements of one hash", "<@/>", equal);
    content("elements at one of 257 places", "<@/>", modulo257);
    content("elements at one of 61,439 places", "<@/>", moduloGrown);
    content("elements of different names", "<@/>");
    content("attributes of one hash on elements", "<b @=''/>", equal);
    content("attributes of different names on elements", "<b @=''/>");
    content("siblings", "<b/>");
    content("siblings with a text", "<b>x</b>");
    content("siblings with an attribute", "<b c=''/>");
    content("CDATA sections", "<![CDATA[x]]>");
    content("empty CDATA sections", "<![CDATA[]]>");
    content("texts and CDATA sections", "x<![CDATA[x]]>");
    content("comments", "<!---->");
    content("instructions", "<?b?>");
    content("character references", "&#65;");
    content("character references in long digits", "&#000000000000000000065;");
    content("predefined entities", "&lt;");
    content("line ends", "\r\n");
    content("brackets", "]]");
    content("white space in tags", "<b          />");
    content("supplementary characters", "\xF0\x9F\x99\x82");
    add("nested elements", [](std::size_t bytes) {
        return one(fill(bytes / 2, "<b>") + fill(bytes / 2 / 3 * 4, "</b>"));
    });
    add("elements never closed", [](std::size_t bytes) { return one(fill(bytes, "<b>")); });
    add("elements with long names, never closed",
        [](std::size_t bytes) { return one(fill(bytes, "<" + std::string(1000, 'b') + ">")); });
    add("attributes of one hash in one tag",
        [](std::size_t bytes) { return one("<a " + fill(bytes, "@='' ", equal) + "/>"); });
    add("attributes of one hash in tags of 300", [](std::size_t bytes) {
        return inA(fill(bytes, "<b " + times(300, "@='' ", equal) + "/>"));
    });
    add("attributes in falling order in one tag",
        [](std::size_t bytes) { return one("<a " + fill(bytes, "@='' ", falling) + "/>"); });
    add("attributes in falling order in tags of 5,000", [](std::size_t bytes) {
        return inA(fill(bytes, "<b " + times(5000, "@='' ", falling) + "/>"));
    });
    add("one huge tag before many small ones", [](std::size_t bytes) {
        return inA("<b " + fill(bytes / 2, "@='' ") + "/>" + fill(bytes / 2, "<b c=''/>"));
    });
    add("elements of one hash, again and again", [](std::size_t bytes) {
        const std::size_t most = 390;
        std::string text = times(most, "<@/>", equal);
        return inA(text + fill(bytes - text.size(), times(100, "<@/>", equal)));
    });
    add("elements at one place, again and again", [](std::size_t bytes) {
        std::string text = times(990, "<@/>", modulo257);
        return inA(text + fill(bytes - std::min(bytes, text.size()), "<" + modulo257(0) + "/>"));
    });
    const auto single = [&](const char* name, const std::string& begin, const std::string& piece,
                            const std::string& end) {
        add(name, [=](std::size_t bytes) { return one(begin + fill(bytes, piece) + end); });
    };
    single("one text", "<a>", "x", "</a>");
    single("one CDATA section", "<a><![CDATA[", "x\n", "]]></a>");
    single("one comment", "<a><!--", "x ", "--></a>");
    single("one instruction", "<a><?b ", "x ", "?></a>");
    single("one attribute value", "<a b='", "x&#65;&amp;\n", "'/>");
    single("one name", "<", "x", "/>");
    single("text in gsm-03.38", "<?xml version=\"1.0\" encoding=\"gsm-03.38-2009\"?><a>",
           "\x1b<aaaaaaaaaaaaaaaaaaaa", "</a>");
    single("text in ISO-2022-CN", "<?xml version=\"1.0\" encoding=\"ISO-2022-CN\"?><a>",
           "\x1b$)A\x0e!!\x0f", "</a>");
    single("text in SCSU", "<?xml version=\"1.0\" encoding=\"SCSU\"?><a>",
           "\x10"
           "a\x11"
           "b",
           "</a>");
    single("text in UTF-7", "<?xml version=\"1.0\" encoding=\"UTF-7\"?><a>", "+AGE-", "</a>");

    // Entities.
    add("entities that double in content", [](std::size_t) {
        return subset("<!ENTITY e0 'x'>" + times(30, "<!ENTITY f$ '&e$;&e$;'>"), "<a>&f9;</a>");
    });
    const auto doubling = [](const std::string& kind, int count) {
        std::string text = "<!ENTITY " + kind + "e0 ' '>";
        const std::string reference = kind.empty() ? "&" : "&#37;";
        for (int i = 1; i <= count; ++i)
            text += "<!ENTITY " + kind + "e" + std::to_string(i) + " '" + reference + "e" +
                    std::to_string(i - 1) + ";" + reference + "e" + std::to_string(i - 1) + ";'>";
        return text;
    };
    add("entities that double, in content",
        [=](std::size_t) { return subset(doubling("", 30), "<a>&e30;</a>"); });
    add("entities that double, in a value", [=](std::size_t) {
        return subset(doubling("", 30) + "<!ATTLIST a b CDATA ''>", "<a b='&e30;'/>");
    });
    add("entities that double, in a default",
        [=](std::size_t) { return subset(doubling("", 30) + "<!ATTLIST a b CDATA '&e30;'>"); });
    add("parameter entities that double",
        [=](std::size_t) { return subset(doubling("% ", 30) + "%e30;"); });
    add("entities, each in the next", [](std::size_t bytes) {
        const std::size_t count = bytes / 28;
        std::string text;
        for (std::size_t i = 0; i < count; ++i)
            text += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i + 1) + ";'>";
        return subset(text + "<!ENTITY e" + std::to_string(count) + " ''>", "<a>&e0;</a>");
    });
    const auto entity = [&](const char* name, const std::string& piece,
                            const std::string& attributes, const std::string& before,
                            const std::string& reference, const std::string& after) {
        add(name, [=](std::size_t bytes) {
            return subset("<!ENTITY e '" + fill(bytes / 2, piece) + "'>" + attributes,
                          before + fill(bytes / 2, reference) + after);
        });
    };
    entity("a large text, again and again", "x", "", "<a>", "&e;", "</a>");
    entity("a large text, again and again in a value", "x", "<!ATTLIST a b CDATA ''>", "<a b='",
           "&e;", "'/>");
    entity("many elements, again and again", "<a/>", "", "<a>", "&e;", "</a>");
    entity("many attributes, again and again", "<a b=\"\"/>", "<!ATTLIST a b CDATA ''>", "<a>",
           "&e;", "</a>");
    entity("many sections, again and again", "<![CDATA[]]>x", "", "<a>", "&e;", "</a>");
    add("few elements, in little, again and again", [](std::size_t) {
        return subset("<!ENTITY e '" + times(500, "<a/>") + "'>",
                      "<a>" + times(3300, "&e;") + "</a>");
    });
    add("empty entities, again and again", [](std::size_t bytes) {
        return subset("<!ENTITY e ''>", "<a>" + fill(bytes, "&e;") + "</a>");
    });
    add("empty parameter entities, again and again",
        [](std::size_t bytes) { return subset("<!ENTITY % e ''>" + fill(bytes, "%e;")); });
    add("a large parameter entity, again and again", [](std::size_t bytes) {
        return subset("<!ENTITY % e '" + fill(bytes / 2, "<!--x-->") + "'>" +
                      fill(bytes / 2, "%e;"));
    });
    add("declarations by a parameter entity, again and again", [](std::size_t bytes) {
        HostileFiles files = one("<!DOCTYPE a SYSTEM 'a.dtd'><a/>");
        files["a.dtd"] = "<!ELEMENT a ANY><!ENTITY % e '" + fill(bytes / 2, "<!ENTITY @ \"\">") +
                         "'>" + fill(bytes / 2, "%e;");
        return files;
    });
    const auto declared = [&](const char* name, const std::string& piece, const Name& names) {
        add(name, [=](std::size_t bytes) { return subset(fill(bytes, piece, names)); });
    };
    declared("entities of one hash", "<!ENTITY @ ''>", equal);
    declared("entities at one of 193 places", "<!ENTITY @ ''>", modulo193);
    declared("entities of different names", "<!ENTITY @ ''>", plain);
    declared("parameter entities of one hash", "<!ENTITY % @ ''>", equal);
    declared("notations of one hash", "<!NOTATION @ SYSTEM ''>", equal);
    declared("notations at one of 193 places", "<!NOTATION @ SYSTEM ''>", modulo193);
    declared("declared elements of one hash", "<!ELEMENT @ ANY>", equal);
    declared("attribute lists of elements of one hash", "<!ATTLIST @ b CDATA ''>", equal);
    declared("attribute lists of different elements", "<!ATTLIST @ b CDATA ''>", plain);
    declared("unparsed entities", "<!ENTITY @ SYSTEM '' NDATA n>", plain);
    declared("the same entity", "<!ENTITY e ''>", plain);
    declared("the same attribute", "<!ATTLIST a b CDATA ''>", plain);
    declared("comments in the document type", "<!---->", plain);
    declared("instructions in the document type", "<?b?>", plain);
    declared("white space in the document type", "  \n", plain);
    declared("entities of quotes", "<!ENTITY @ '\"\"\"\"\"\"\"\"'>", plain);
    add("a value of quotes",
        [](std::size_t bytes) { return subset("<!ENTITY e '" + fill(bytes, "\"") + "'>"); });
    add("names of one hash in one model", [](std::size_t bytes) {
        return subset("<!ELEMENT b (x" + fill(bytes, "|@", equal) + ")>");
    });
    add("names of one hash in models", [](std::size_t bytes) {
        std::string text;
        for (std::size_t i = 0; text.size() < bytes; ++i)
            text +=
                "<!ELEMENT m" + std::to_string(i) + " (x" + fill(3000, "|@", equal, i * 100) + ")>";
        return subset(text);
    });

    // Attributes.
    const auto listed = [&](const char* name, const std::string& list, const std::string& item,
                            const std::string& end, const std::string& piece,
                            const Name& names = plain) {
        add(name, [=](std::size_t bytes) {
            return subset(list + fill(bytes / 2, item, names) + end,
                          "<a>" + fill(bytes / 2, piece, names) + "</a>");
        });
    };
    listed("declared attributes and empty elements", "<!ATTLIST a ", "@ CDATA #IMPLIED ", ">",
           "<a/>");
    listed("defaults and empty elements", "<!ATTLIST a ", "@ CDATA '' ", ">", "<a/>");
    listed("a long default and empty elements", "<!ATTLIST a b CDATA '", "x", "'>", "<a/>");
    add("ten defaults and empty elements", [](std::size_t bytes) {
        return subset("<!ATTLIST a " + times(10, "@ CDATA '' ") + ">",
                      "<a>" + fill(bytes, "<a/>") + "</a>");
    });
    add("two hundred attributes and empty elements", [](std::size_t bytes) {
        return subset("<!ATTLIST a " + times(200, "@ CDATA #IMPLIED ") + ">",
                      "<a>" + fill(bytes, "<a/>") + "</a>");
    });
    const auto lists = [&](const char* name, const std::string& piece, const std::string& first,
                           const Name& names = plain) {
        add(name, [=](std::size_t bytes) { return subset(first + fill(bytes, piece, names)); });
    };
    lists("attribute lists of one element", "<!ATTLIST a @ CDATA ''>", "");
    lists("attribute lists with falling defaults", "<!ATTLIST a @ CDATA ''>", "", falling);
    add("attribute lists with long defaults", [](std::size_t bytes) {
        return subset("<!ATTLIST a b CDATA '" + fill(bytes / 2, "x") + "'>" +
                      fill(bytes / 2, "<!ATTLIST a @ CDATA #IMPLIED>"));
    });
    add("attribute lists with a long default each", [](std::size_t bytes) {
        return subset(fill(bytes, "<!ATTLIST a @ CDATA '" + std::string(2000, 'x') + "'>"));
    });
    add("attribute lists with long defaults by an entity", [](std::size_t bytes) {
        return subset("<!ENTITY e '" + std::string(5000, 'x') + "'>" +
                      fill(bytes, "<!ATTLIST a @ CDATA '&e;&e;'>"));
    });
    add("empty attribute lists", [](std::size_t bytes) {
        return subset("<!ATTLIST a " + times(1000, "@ CDATA '' ") + ">" +
                      fill(bytes, "<!ATTLIST a>"));
    });
    add("defaults in falling order in one list", [](std::size_t bytes) {
        return subset("<!ATTLIST a " + fill(bytes, "@ CDATA '' ", falling) + ">");
    });
    add("attributes of one hash in one list", [](std::size_t bytes) {
        return subset("<!ATTLIST a " + fill(bytes, "@ CDATA #IMPLIED ", equal) + ">");
    });
    add("attributes at one of 61,439 places in one list", [](std::size_t bytes) {
        return subset("<!ATTLIST a " + fill(bytes, "@ CDATA #IMPLIED ", moduloGrown) + ">");
    });
    const auto choice = [](std::size_t bytes) {
        return "(x" + fill(std::min<std::size_t>(bytes, 60'000), "|@") + ")";
    };
    add("values looked up in a long list", [=](std::size_t bytes) {
        return subset("<!ATTLIST a b " + choice(bytes / 2) + " #IMPLIED>",
                      "<a>" + fill(bytes / 2, "<a b='x'/>") + "</a>");
    });
    add("last values looked up in a long list", [=](std::size_t bytes) {
        return subset("<!ATTLIST a b " + choice(bytes / 2) + " #IMPLIED>",
                      "<a>" + fill(bytes / 2, "<a b='n5000'/>") + "</a>");
    });
    add("a default from a long list", [=](std::size_t bytes) {
        return subset("<!ATTLIST a b " + choice(bytes / 2) + " 'n5000'>",
                      "<a>" + fill(bytes / 2, "<a/>") + "</a>");
    });
    add("several values from a long list", [=](std::size_t bytes) {
        return subset("<!ATTLIST a b " + choice(bytes / 2) + " #IMPLIED>",
                      "<a b='" + fill(bytes / 2, "n5000 ") + "n5000'/>");
    });
    add("long lists", [=](std::size_t bytes) {
        std::string text;
        for (std::size_t i = 0; text.size() < bytes; ++i)
            text +=
                "<!ATTLIST b" + std::to_string(i) + " b (x" + fill(60'000, "|@") + ") #IMPLIED>";
        return subset(text);
    });
    add("one list that is too long", [](std::size_t bytes) {
        return subset("<!ATTLIST a b (x" + fill(bytes, "|@") + ") #IMPLIED>");
    });
    const auto typed = [&](const char* name, const std::string& type, const std::string& piece,
                           const Name& names, const std::string& before = "") {
        add(name, [=](std::size_t bytes) {
            return subset(before + "<!ATTLIST a b " + type + " #IMPLIED>",
                          "<a>" + fill(bytes, piece, names) + "</a>");
        });
    };
    typed("IDs of one hash", "ID", "<a b='@'/>", equal);
    typed("IDs at one of 61,439 places", "ID", "<a b='@'/>",
          [](std::size_t i) { return leaving(i, 110 * 512 - 1); });
    typed("IDs", "ID", "<a b='@'/>", plain);
    typed("references of one hash to IDs", "IDREF", "<a b='@'/>", equal);
    add("references of one hash in one value", [](std::size_t bytes) {
        return subset("<!ATTLIST a b IDREFS #IMPLIED>",
                      "<a b='" + fill(bytes, "@ ", equal) + "x'/>");
    });
    add("the same reference in one value", [](std::size_t bytes) {
        return subset("<!ATTLIST a b IDREFS #IMPLIED c ID #IMPLIED>",
                      "<a c='x' b='" + fill(bytes, "x ") + "x'/>");
    });
    add("tokens in one value", [](std::size_t bytes) {
        return subset("<!ATTLIST a b NMTOKENS #IMPLIED>", "<a b='" + fill(bytes, "x  ") + "x'/>");
    });
    add("entities of one hash in values", [](std::size_t bytes) {
        return subset(
            "<!NOTATION n SYSTEM ''>" + times(390, "<!ENTITY @ SYSTEM '' NDATA n>", equal) +
                "<!ATTLIST a b ENTITIES #IMPLIED>",
            "<a b='" + fill(bytes, "@ ", [](std::size_t) { return equal(0); }) + equal(0) + "'/>");
    });
    add("a long fixed value", [](std::size_t bytes) {
        const std::string value(bytes / 2, 'x');
        return subset("<!ATTLIST a b CDATA #FIXED '" + value + "'>", "<a b='" + value + "'/>");
    });

    // Content models.
    const auto models = [&](const char* name, const std::string& before, const std::string& model,
                            const std::string& item, std::size_t most, const std::string& end,
                            const std::string& piece) {
        add(name, [=](std::size_t bytes) {
            const std::size_t size = std::min(most, bytes / 2);
            return subset(before + "<!ELEMENT b (" + model + fill(size, item) + end + ">",
                          "<a>" + fill(bytes > size ? bytes - size : 1, piece) + "</a>");
        });
    };
    models("a model of 1,000 optional names", "", "x?", ",@?", 6'800, ")", "<b/>");
    models("a model of 2,000 optional names", "", "x?", ",@?", 14'800, ")", "<b/>");
    models("a model of 3,300 optional names", "", "x?", ",@?", 25'000, ")", "<b/>");
    models("a model of optional names", "", "x?", ",@?", SIZE_MAX, ")", "<b/>");
    models("an ambiguous model", "", "(x|y)*,x", ",(x|y)", 30 * 6, ")", "<b/>");
    models("a mixed model, looked up", "<!ELEMENT n3000 EMPTY>", "#PCDATA", "|@", 24'000, ")*",
           "<b><n3000/></b>");
    models("a choice, looked up", "<!ELEMENT n2000 EMPTY>", "x", "|@", 16'000, ")*",
           "<b><n2000/><n2000/></b>");
    models("names of one beginning, looked up", "<!ELEMENT n20 EMPTY>", "x",
           "|" + std::string(2000, 'y') + "@", 200'000, "|n20)*", "<b><n20/></b>");
    models("a short choice, looked up", "<!ELEMENT n200 EMPTY>", "x", "|@", 1'600, ")*", "<n200/>");
    models("invalid children of a large model", "", "x", "|@", 16'000, ")", "<b><b/></b>");
    models("a model of nested groups", "", "", "(", SIZE_MAX, "x", "<b/>");
    models("a model of groups in groups", "", "x", ",(x", SIZE_MAX, "", "<b/>");
    add("many models of 300 optional names", [](std::size_t bytes) {
        std::string text;
        std::string used;
        for (std::size_t i = 0; text.size() < bytes; ++i) {
            text += "<!ELEMENT m" + std::to_string(i) + " (x?" + times(300, ",@?") + ")>";
            used += "<m" + std::to_string(i) + "/>";
        }
        return subset(text, "<a>" + used + "</a>");
    });
    add("many ambiguous models", [](std::size_t bytes) {
        std::string text;
        std::string used;
        for (std::size_t i = 0; text.size() < bytes; ++i) {
            text += "<!ELEMENT m" + std::to_string(i) + " ((x|y)*,x" + times(6, ",(x|y)") + ")>";
            used += "<m" + std::to_string(i) + "/>";
        }
        return subset(text, "<a>" + used + "</a>");
    });
    add("names of one beginning in a model", [](std::size_t bytes) {
        return subset("<!ELEMENT b (x" + fill(bytes, "|" + std::string(2000, 'y') + "@") + ")*>",
                      "<a><b/></a>");
    });
    add("names of 100 characters, alike but for the end, in a model", [](std::size_t bytes) {
        return subset(
            "<!ELEMENT b (x" +
                fill(std::min<std::size_t>(bytes, 400'000), "|" + std::string(100, 'y') + "@") +
                ")*>",
            "<a><b/></a>");
    });

    // Names of files.
    const auto path = [&](const char* name, const std::string& begin, const std::string& piece) {
        add(name, [=](std::size_t bytes) {
            return subset("<!ENTITY e SYSTEM '" + begin + fill(bytes, piece) + "x'>", "<a>&e;</a>");
        });
        add((std::string(name) + ", of the document type").c_str(), [=](std::size_t bytes) {
            return one("<!DOCTYPE a SYSTEM '" + begin + fill(bytes, piece) + "x'><a/>");
        });
    };
    path("a path with steps up", "", "b/../");
    path("a path with steps nowhere", "", "./");
    path("a path with escapes", "", "%41");
    path("a remote path with steps up", "http://localhost/", "b/../");
    path("a file's path with escapes", "file:///", "%41");
    add("a path of 4 kB, again and again", [](std::size_t bytes) {
        HostileFiles files = subset("<!ENTITY e SYSTEM '" + fill(4000, "./") + "part.xml'>",
                                    "<a>" + fill(bytes, "&e;") + "</a>");
        files["part.xml"] = "x";
        return files;
    });
    add("a document in a path of 4 kB, again and again", [](std::size_t bytes) {
        std::string text;
        std::string used;
        for (std::size_t i = 0; text.size() + used.size() < bytes; ++i) {
            text += "<!ENTITY e" + std::to_string(i) + " SYSTEM 'part.xml'>";
            used += "&e" + std::to_string(i) + ";";
        }
        HostileFiles files =
            subset("<!ENTITY e SYSTEM '" + fill(4000, "./") + "one.xml'>" + text, "<a>&e;</a>");
        files["one.xml"] = used;
        files["part.xml"] = "x";
        return files;
    });
    add("a small file, again and again", external("x", "&e;"));
    add("a small file in another encoding, again and again",
        external("<?xml encoding='GB18030'?>x", "&e;"));
    add("a file of elements, again and again", external(times(10'000, "<a/>"), "&e;"));
    add("many files", [](std::size_t bytes) {
        HostileFiles files;
        std::string text;
        std::string used;
        for (std::size_t i = 0; i < std::min<std::size_t>(bytes / 100, 2000); ++i) {
            const std::string name = "p" + std::to_string(i);
            files[name] = "x";
            text += "<!ENTITY " + name + " SYSTEM '" + name + "'>";
            used += "&" + name + ";";
        }
        files.merge(subset(text, "<a>" + used + "</a>"));
        return files;
    });
    add("conditional sections", [](std::size_t bytes) {
        HostileFiles files = one("<!DOCTYPE a SYSTEM 'a.dtd'><a/>");
        files["a.dtd"] = "<!ELEMENT a ANY>" + fill(bytes, "<![INCLUDE[]]><![IGNORE[<![x[]]>]]>");
        return files;
    });
    add("ignored sections in one another", [](std::size_t bytes) {
        HostileFiles files = one("<!DOCTYPE a SYSTEM 'a.dtd'><a/>");
        files["a.dtd"] =
            "<!ELEMENT a ANY>" + fill(bytes / 2, "<![IGNORE[") + fill(bytes / 6, "]]>");
        return files;
    });
    return shapes;
}

} // namespace

const std::vector<HostileShape>& hostileShapes() {
    static const std::vector<HostileShape> shapes = make();
    return shapes;
}
