// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>
#include <qrndom/PelDOMDocument.h>
#include <qrndom/export.h>

/// The services of the library: starts and stops the engine, reads, creates and writes documents.
///
/// Owns     no document: each one belongs to the handles into it.
/// Lives    from the first getUtilities to releaseUtilities; one object in a process.
/// Threads  the caller keeps getUtilities, releaseUtilities, init, terminate and the writes apart.
///          Reads may run in several threads at once, once the engine is started.
/// Errors   codes of PelDOM::Error; a read or creation that fails gives a null document.
/// Cost     a read makes a parser of its own and keeps nothing of it.
class QRNDOM_API PelDOMUtilites {
public:
    /// The services object, made on the first call. Null when there is none yet and `p` is not
    /// PelDOM::PLATFORM_XERCES. It stays the library's: let go of it with releaseUtilities.
    static PelDOMUtilites* getUtilities(PelDOM::Platform p);

    /// Stops the engine if it is started and deletes the services object, if there is one.
    /// Documents live on.
    static void releaseUtilities();

    /// Why the calling thread's last read failed, as one line for people: "file:line:column:
    /// message". Empty after a read that succeeded. The file is as the caller or the document
    /// named it, "text" for a string; a failure that has no place in it has line and column 0.
    static PelString getLastReadMessage();

    /// Why what the calling thread's last writeDocument wrote did not arrive whole, as one line for
    /// people: "a.xml: No space left on device", whatever its code. Empty when it did.
    static PelString getLastWriteMessage();

    /// The engine's release and how the library uses it here, as one line for people. "through its
    /// interface alone" is the slow way: see QRNDOM_ENGINE_FIELDS, and releases that are not known.
    /// Starts the engine for as long as the call takes, if it is not started.
    static PelString describeEngine();

    /// A services object that has not started its engine: NOT_INITIALIZED.
    PelDOMUtilites();

    /// A copy carries the status and nothing else.
    PelDOMUtilites(const PelDOMUtilites& other);

    /// Takes over the status and nothing else.
    PelDOMUtilites& operator=(const PelDOMUtilites& other);

    /// Stops the engine unless the status is NOT_INITIALIZED; releaseUtilities calls it.
    virtual ~PelDOMUtilites();

    /// A new document: an XML declaration (version 1.0, UTF-8) and a root element. A null document
    /// for an empty name or when the engine does not start; the engine's DOM exception for a name
    /// that XML forbids or one with a colon. Starts the engine if need be.
    virtual PelDOMDocument createDocument(const PelString& rootName) = 0;

    /// Starts the engine: SUCCESS or INITIALIZATION_FAILED, which becomes the status. Reading and
    /// creating call it themselves when need be. Each call is one start, to be paired with one
    /// terminate. A start that failed is tried again, unless it has left the engine half built.
    virtual PelDOM::Error init() = 0;

    /// Stops the engine and sets the status to NOT_INITIALIZED; always SUCCESS. Documents stay
    /// usable, since the engine goes on as long as one lives. One terminate too many takes away
    /// nothing, not from a program either that has started the engine by itself.
    virtual PelDOM::Error terminate() = 0;

    /// Reads a file. A null document for an empty name, a file that cannot be read, text that is
    /// not well-formed, a document that violates its own document type declaration, an entity or
    /// DTD on a remote address, or a document that takes more than the limits allow (entities
    /// expanded more than 50,000 times, say). Starts the engine if need be.
    ///
    /// A pipe or device may be named as well. One that nobody writes to yet is not waited for.
    ///
    /// Entity references are replaced by their text, and white space that a declared content model
    /// makes ignorable is left out. A document type declaration with a subset or an
    /// external DTD makes the reader validate.
    virtual PelDOMDocument readDocument(const PelString& fileName) = 0;

    /// Reads text as bytes of ISO-8859-1, the encoding being recognised from those bytes: UTF-8
    /// unless a byte-order mark or the XML declaration says otherwise. Text with units above U+00FF
    /// is refused. Otherwise as readDocument.
    virtual PelDOMDocument readDocumentFromStringA(PelString text) = 0;

    /// Reads text as the UTF-16 that it is, whatever encoding its XML declaration names. Otherwise
    /// as readDocument.
    virtual PelDOMDocument readDocumentFromStringW(PelString text) = 0;

    /// Writes a document to the file named by `target` (`toFile` not 0) or into `target`.
    ///
    /// `newlines` (not 0) adds line feeds before each element and after each child of the document
    /// and one at the end; in a file each line feed is CR LF. `terminator` (not 0) adds a NUL byte
    /// to the file. The first write of the process settles its output encoding: that of the
    /// document's XML declaration, or UTF-8. A document that was read as XML 1.1 gets a declaration
    /// that says so.
    ///
    /// Characters that XML forbids, such as U+0001 and U+FFFE, are written as they are; no reader
    /// takes the result.
    ///
    /// NULL_NODE for a null document (a named file is emptied all the same), INTERNAL_ERROR for an
    /// output encoding that the engine does not know or text that is not well-formed UTF-16. A file
    /// that cannot be opened or written changes no code: only getLastWriteMessage tells. Its name
    /// ends at its first U+0000.
    virtual PelDOM::Error writeDocument(const PelDOMDocument& document, PelString& target,
                                        int toFile, int newlines, int terminator) = 0;

    /// Writes a document to a file with line feeds and no NUL byte. INVALID_VALUE for an empty
    /// name, else as above.
    virtual PelDOM::Error writeDocument(const PelDOMDocument& document,
                                        const PelString& fileName) = 0;

    /// NOT_INITIALIZED, SUCCESS (started) or INITIALIZATION_FAILED, or what was set.
    PelDOM::Error getErrorStatus() const noexcept { return errorStatus; }

    /// Stores a status. Reading and creating start the engine whenever it is not SUCCESS.
    void setErrorStatus(PelDOM::Error status) noexcept { errorStatus = status; }

private:
    static PelDOMUtilites* Utilities;

    PelDOM::Error errorStatus = PelDOM::NOT_INITIALIZED;
};
