#pragma once

/// \file
/// Named values as XML elements. Part of `libkelvobase-xml`.
///
///     Serialization::XMLWriteAny(ScalarAny<int>(5), "count", "IntAny", parent);
///
/// gives, within `parent`, an element with the text form of the value and the name of its type; a list is one text, its
/// elements joined by commas:
///
///     <count DataType="IntAny">5</count>
///     <names DataType="StringVectorAny">a,b</names>

#include <kelvobase/Export.h>
#include <kelvobase/XMLParser.h>

#include <string>

namespace KelvoBase
{

class Any;

/// Writes and reads values, one child element of `parent` each. None of the operations changes the pointer that it is
/// handed by reference.
///
/// Writing: REQUIRES that `parent` is not null; throws what `XMLCreator` throws for names and parents.
///
/// Reading finds direct children only, and the first of several. It does not throw by itself, and a null `parent`, as
/// everything that is missing, is no error. Required (Q-1005): the attribute `DataType` decides nothing; a value that
/// was written as another type is read without comment. `getCheckedElement` is for those who want to hear of it.
class KELVOBASE_XML_API Serialization
{
public:
    /// Writes `value.toString(",")` as `XMLWriteString` writes a text.
    static void XMLWriteAny(const Any& value, const std::string& name, const std::string& dataType,
                            xercesc::DOMNode*& parent);
    /// Adds an element `name` with the text `value`, and with the attribute `DataType` unless `dataType` is empty.
    static void XMLWriteString(const std::string& value, const std::string& name, const std::string& dataType,
                               xercesc::DOMNode*& parent);

    /// Reads a value from the text of an element. Required (Q-1004): without such an element, or without a text in it,
    /// the value is given the empty text all the same, and what comes of that is the matter of its type: a number
    /// throws `WrongTypeException`, a `StringAny` becomes empty, a list gets one element or throws.
    static void XMLReadAny(Any& value, const std::string& name, const std::string& dataType, xercesc::DOMNode*& parent);
    /// Reads the text of an element. Without such an element `value` stays as it was. Required (Q-1007): so it does
    /// for an element without a text; an empty string that was written to a file does not come back.
    static void XMLReadString(std::string& value, const std::string& name, const std::string& dataType,
                              xercesc::DOMNode*& parent);
    /// Reads the text of the element `node` itself, for loops that walk the children by themselves; `name` is not
    /// looked at. If `node` is no element, `value` stays. Required (Q-1008): an element without a text makes it empty,
    /// other than with `XMLReadString`.
    static void XMLReadStringInline(std::string& value, const std::string& name, const std::string& dataType,
                                    xercesc::DOMNode*& node);

    /// The child element `name`, or null. Library keeps. Required (Q-1006): it comes also when its `DataType` is not
    /// `dataType` (a missing one counts as empty); then, if `parent` is an element, the line
    ///
    ///     Current Parent Tag Name: TAG
    ///
    /// goes to the trace (`Trace::fail`, all areas), TAG being that of `parent`. Below a document nothing is said.
    static xercesc::DOMElement* getCheckedElement(const std::string& name, const std::string& dataType,
                                                  xercesc::DOMNode*& parent);
};

} // namespace KelvoBase
