#pragma once

/// MFC_API marks what the framework DLL exports: classes with virtual functions as a whole (their
/// run-time type information must be one object), others member by member.
#ifdef mfc_EXPORTS
#define MFC_API __declspec(dllexport)
#else
#define MFC_API __declspec(dllimport)
#endif

#if !defined(UNICODE) || !defined(_UNICODE)
#error "The framework exists in its Unicode form only: define UNICODE and _UNICODE."
#endif
