#pragma once

/// \file
/// What becomes of an exception that leaves Xerces-C while it reads a file.

#include "xml/XmlText.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>

namespace KelvoBase
{

/// Runs `parse`; whatever it throws leaves as an `OperationFailedException`.
template <typename Parse>
void withTranslatedFailures(const ResourceLocation& location, Parse&& parse)
{
    try {
        parse();
    } catch (const xercesc::XMLException& e) {
        throw OperationFailedException(nativeText(e.getMessage()));
    } catch (const xercesc::DOMException& e) {
        throw OperationFailedException(nativeText(e.getMessage()));
    } catch (...) {
        throw OperationFailedException("Unexpected Exception while trying to parse \"" + location.str() + "\".");
    }
}

} // namespace KelvoBase
