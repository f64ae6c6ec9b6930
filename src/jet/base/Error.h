#pragma once

#include <stdexcept>
#include <string>

namespace jet {

/// What went wrong, in as many kinds as a caller may want to tell apart.
enum class ErrorKind {
    // opening
    FileNotFound,
    AccessDenied,
    Locked,        ///< open elsewhere, here or in another process
    AlreadyExists, ///< a file that should be created is there
    NotADatabase,  ///< no Jet file at all, or a header alone
    Unsupported,   ///< a Jet file of a kind we refuse: ACE, password, encrypted
    // the file
    ReadOnly, ///< a change to a file (or recordset) that can only be read
    Damaged,  ///< message names file, page and what is wrong
    Io,       ///< the operating system failed to read, write or flush
    DiskFull,
    FileFull, ///< the next page would lie beyond 2 GB
    // rows
    Duplicate,        ///< second equal key in a unique index
    NullNotAllowed,   ///< required field, or part of a primary key
    EmptyNotAllowed,  ///< zero-length text in a field that refuses it
    TooLong,          ///< text or binary longer than the field
    RowTooLarge,      ///< the row does not fit on a page
    BadValue,         ///< a value that does not convert to the field's type
    TextNotIndexable, ///< a character whose place in the sort order is unknown
    RuleViolated,     ///< a validation rule of the field
    // names and schema
    UnknownTable,
    UnknownField,
    UnknownIndex,
    UnknownFunction,
    AmbiguousField,
    NameInUse,
    BadName,
    BadSchema, ///< e.g. two autonumbers, eleven fields in an index
    InUse,     ///< the table is open in a recordset and cannot be dropped
    // statements
    Syntax,
    TypeMismatch,
    Overflow,
    Query, ///< anything else a statement can fail by
    // use of the objects
    Closed,            ///< database or recordset was closed
    NoCurrentRow,      ///< moved off the rows, or the row was deleted
    NoEdit,            ///< Update without Edit or AddNew, Set without either
    NotSupported,      ///< this recordset kind cannot do that
    NoTransaction,     ///< commit or roll-back without begin
    TransactionFailed, ///< a write failed half-way: only roll-back is possible now
};

/// The one exception of the engine. `what()` is a whole Dutch sentence in
/// UTF-8 that can be shown to a user as it stands; it names the file, table,
/// field, index or page concerned.
class Error : public std::runtime_error {
public:
    Error(ErrorKind kind, const std::string& message) : std::runtime_error(message), m_kind(kind) {}

    ErrorKind Kind() const { return m_kind; }

private:
    ErrorKind m_kind;
};

} // namespace jet
