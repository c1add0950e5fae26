#pragma once

/// Marks what zel_xml exports.
#ifdef zel_xml_EXPORTS
#define ZEL_XML_API __declspec(dllexport)
#else
#define ZEL_XML_API __declspec(dllimport)
#endif
