// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>
#include <qrndom/PelString.h>
#include <qrndom/export.h>

#include <iosfwd>
#include <memory>
#include <string>

class PelDOMNode;

/// Writes trees as XML, with choices, and says whether what it wrote has arrived.
///
/// Owns     its settings and its last message; copies are independent.
/// Lives    as long as the caller likes; may be used again and again.
/// Threads  one thread at a time for a writer, and for the tree that it writes. Nothing is shared
///          between writers, nor with the writes of the services.
/// Errors   SUCCESS when everything has arrived; NULL_NODE for a null handle; else INTERNAL_ERROR.
///          A failed write leaves its target as it was, except where writeFile says otherwise.
///          Only running out of memory throws, std::bad_alloc, and leaves the target as it was too.
/// Cost     time in the size of what is written; memory for a piece of it, and for its depth.
///
/// What is written reads back as the same tree. A document gets an XML declaration, and each of its
/// children a line end. Within elements nothing is added unless an indent is set. Characters that
/// the encoding does not hold, and carriage returns, become references, around which a CDATA
/// section is split; in a comment or instruction a carriage return becomes a line feed. Refused is
/// what no reader would take: characters that XML forbids, `--` in a comment, half a surrogate
/// pair, a document without a root; in names, comments and instructions, where references mean
/// nothing, also characters that the encoding does not hold.
class QRNDOM_API PelDOMWriter {
public:
    /// How lines end: with U+000A, or with U+000D U+000A.
    enum LineEnds { LF, CRLF };

    /// No indent, LF, UTF-8, with a declaration.
    PelDOMWriter();

    /// A copy has the same settings and message.
    PelDOMWriter(const PelDOMWriter& other);

    /// Takes over settings and message.
    PelDOMWriter& operator=(const PelDOMWriter& other);

    /// Touches nothing that was written.
    ~PelDOMWriter();

    /// The number of spaces by which each level is indented; 0, the default, or less: the content
    /// of elements is written as it is.
    ///
    /// With an indent each child of an element has its line, unless text other than spaces, tabs
    /// and line feeds stands in the element or in one around it, or `xml:space` says "preserve"
    /// there. White space that stood between such children makes way, so what was indented once
    /// comes out the same again. No line is indented by more than 256 spaces.
    void setIndent(int spaces) noexcept;

    /// The number of spaces, 0 for none.
    int getIndent() const noexcept;

    /// How all lines end, those within texts and comments too: readers make a line feed of either.
    void setLineEnds(LineEnds ends) noexcept;

    /// LF or CRLF.
    LineEnds getLineEnds() const noexcept;

    /// The encoding of what is written, by a name that the engine or ICU knows: "UTF-8" (the
    /// default), "ISO-8859-1", "UTF-16" (which begins with a byte-order mark). An unknown one fails
    /// the writes.
    void setEncoding(const PelString& encoding);

    /// The name as it was set.
    PelString getEncoding() const;

    /// Whether documents begin with an XML declaration, as they do by default. So do elements that
    /// are written by themselves, if they could not be read without. Without one, documents are
    /// written as XML 1.0, and readers have to know of an encoding other than UTF-8 and UTF-16.
    void setDeclaration(bool isWanted) noexcept;

    /// Whether they do.
    bool getDeclaration() const noexcept;

    /// Whether attributes that nobody wrote, that only a declaration gave, are written too. They
    /// are not by default, where the document is written with its document type.
    void setDefaultAttributes(bool areWanted) noexcept;

    /// Whether they are.
    bool getDefaultAttributes() const noexcept;

    /// Whether a document that was read with PelDOMReader::setKeepSource keeps its layout: what was
    /// not changed is written byte for byte as it was read, and a change touches only itself. Off
    /// by default; without a kept source it does nothing.
    ///
    /// What is new takes the layout of what stands beside it, in the source's encoding and with its
    /// line ends. Indent, line ends and declaration hold for what is new if they were set, and
    /// another encoding makes all of it new.
    void setKeepLayout(bool isKept) noexcept;

    /// Whether it does.
    bool getKeepLayout() const noexcept;

    /// Writes a node of any kind, with all below it, to a file: whole, or not at all.
    ///
    /// A temporary file beside it (`.qrndom-` and random letters) takes what is written, is brought
    /// to the disk, and then takes the file's place and its permissions, owner and extended
    /// attributes as far as the system allows. Until then the old file stays. A process that dies
    /// in between leaves the temporary file behind, which may be deleted. A symbolic link stays,
    /// and the file behind it is replaced.
    ///
    /// Devices, pipes and files with several names cannot be replaced: they are written in place,
    /// once it is known that the tree can be written, and a failure on the way leaves a part there.
    /// A pipe that nobody reads is not waited for.
    ///
    /// SUCCESS with a message: the new file is in place, whole and on the disk, but the system
    /// failed to bring the folder there too, so a crash of the system may bring the old file back.
    PelDOM::Error writeFile(const PelDOMNode& node, const PelString& name);

    /// The same into `bytes`, which are replaced.
    PelDOM::Error writeBytes(const PelDOMNode& node, std::string& bytes);

    /// The same to a stream, once it is known that the tree can be written, and flushes it. A
    /// stream that fails may have taken a part. Nothing that the stream or its buffer throws comes
    /// out of here, whatever its `exceptions()` ask for: it is INTERNAL_ERROR.
    PelDOM::Error writeStream(const PelDOMNode& node, std::ostream& stream);

    /// Why the last write failed, as one line for people: "a.xml: No space left on device". Empty
    /// after one that succeeded, but for what writeFile says.
    PelString getMessage() const;

private:
    struct Body;

    std::unique_ptr<Body> body;
};
