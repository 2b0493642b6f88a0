// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMMessage.h>
#include <qrndom/PelString.h>
#include <qrndom/export.h>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <vector>

/// Reads documents with choices, and says what is wrong with those that it refuses.
///
/// Owns     its settings and the messages of its latest read.
/// Lives    as long as the caller likes, and may be used again and again; documents live on
///          without it. From its first read on it keeps the engine up.
/// Threads  one thread at a time for a reader. Readers share nothing among them, nor with the
///          reads of the services.
/// Errors   a null document, and messages, of which none is printed; only running out of memory
///          throws, std::bad_alloc, where it does not give a message.
/// Cost     a read takes time and memory in the size of its input, within the limits; a reader
///          that is used again saves starting the engine.
///
/// A new reader reads as PelDOMUtilites does. Settings hold for all reads that follow.
class QRNDOM_API PelDOMReader {
public:
    /// Which documents have to keep to a document type: none, those that declare one, or all.
    enum Validation { NEVER, IF_DECLARED, ALWAYS };

    /// What becomes of documents with a document type declaration.
    enum DocumentType { ACCEPT, REFUSE };

    /// What is bounded. Most bounds have a part that every document may take, and one for each byte
    /// of input besides.
    enum Limit {
        WORK,               ///< Steps of about a nanosecond that are counted before they are taken.
        WORK_PER_BYTE,      ///< The same, for each byte of input.
        MEMORY,             ///< Bytes, of the parser and the tree.
        MEMORY_PER_BYTE,    ///< The same, for each byte of input.
        TIME,               ///< Milliseconds of processor time, where nothing else is counted.
        TIME_PER_BYTE,      ///< The same for each byte of input, in nanoseconds.
        EXPANSION,          ///< Characters from entities, default attributes, files named again.
        EXPANSION_PER_BYTE, ///< The same, for each byte of input.
        ENTITY_EXPANSIONS,  ///< References to general entities, in content and attribute values.
        REFERENCES,         ///< References to entities of any kind.
        NAMES,              ///< Different names; declarations of each kind.
        MODEL_PARTS,        ///< Names, groups and signs in one content model.
        LIST_CHARACTERS,    ///< Characters of one list of attribute values.
        MESSAGE_CHARACTERS, ///< Characters of all messages of a read.
    };

    /// The settings of the services.
    PelDOMReader();

    /// A reader with the same settings, and no messages.
    PelDOMReader(const PelDOMReader& other);

    /// Takes over the settings, and has no messages then.
    PelDOMReader& operator=(const PelDOMReader& other);

    /// Documents that it read live on.
    ~PelDOMReader();

    /// With IF_DECLARED, the default, documents with a document type that declares something, in
    /// the document or in an external subset, have to be valid. With NEVER declarations are only
    /// read for the entities and default attributes in them, and an external subset that cannot be
    /// read is left out, with a warning; a reference to what is declared nowhere is an error all
    /// the same. With ALWAYS a document without a type is refused.
    void setValidation(Validation validation) noexcept;

    /// As it was set.
    Validation getValidation() const noexcept;

    /// REFUSE refuses a document at its DOCTYPE, whatever its encoding. The default is ACCEPT.
    void setDocumentType(DocumentType choice) noexcept;

    /// As it was set.
    DocumentType getDocumentType() const noexcept;

    /// Whether external subsets and entities are read, as they are by default. If not, none is
    /// opened: each counts as empty, and a warning says so.
    void setExternalDTD(bool isRead) noexcept;

    /// As it was set.
    bool getExternalDTD() const noexcept;

    /// Whether files that a document names are read, as they are by default. An external subset is
    /// such a file too: with either of the two settings off, nothing is opened.
    void setExternalEntities(bool areRead) noexcept;

    /// As it was set.
    bool getExternalEntities() const noexcept;

    /// Whether white space stays that a declared content model makes ignorable; by default it is
    /// left out.
    void setKeepIgnorableWhitespace(bool isKept) noexcept;

    /// As it was set.
    bool getKeepIgnorableWhitespace() const noexcept;

    /// Whether trees keep the bytes that they were read from, and where each node stood in them, so
    /// that a PelDOMWriter can leave what was not changed as it was, and nodes know their lines.
    /// Off by default. It takes the size of the document, in UTF-8, and 8 bytes for each node.
    /// Sources over 4 GiB are not kept; a warning says so.
    void setKeepSource(bool isKept) noexcept;

    /// As it was set.
    bool getKeepSource() const noexcept;

    /// The file from which the names in documents that are read from bytes and streams are found,
    /// as if they had been read from there; by default one in the current directory.
    void setBase(const PelString& fileName);

    /// As it was set.
    PelString getBase() const;

    /// The number of messages that are kept of one read, 100 by default.
    void setMaxMessages(std::size_t count) noexcept;

    /// As it was set.
    std::size_t getMaxMessages() const noexcept;

    /// Sets one bound; the page on limits has the defaults and what they are against. A bound that
    /// is raised lets documents take more time and memory than that page promises.
    void setLimit(Limit limit, std::size_t value) noexcept;

    /// The bound in force.
    std::size_t getLimit(Limit limit) const noexcept;

    /// Reads a file, pipe or device. One that nobody writes to yet is not waited for.
    PelDOMDocument readFile(const PelString& name);

    /// Reads bytes in the encoding that they begin with: a byte-order mark or an XML declaration,
    /// else UTF-8. Messages call them `name`.
    PelDOMDocument readBytes(const void* bytes, std::size_t size, const PelString& name);

    /// Reads a stream to its end, then its bytes as above.
    PelDOMDocument readStream(std::istream& stream, const PelString& name);

    /// What there is to say about the latest read: after one that failed, why; after one that
    /// succeeded, its warnings, if any. An error of well-formedness ends a read, and comes last; of
    /// what breaks a document type each has its message.
    const std::vector<PelDOMMessage>& getMessages() const noexcept;

private:
    struct Body;

    std::unique_ptr<Body> body;
};
