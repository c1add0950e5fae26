#pragma once

/// Marks what pro_actions exports.
#ifdef pro_actions_EXPORTS
#define PRO_ACTIONS_API __declspec(dllexport)
#else
#define PRO_ACTIONS_API __declspec(dllimport)
#endif
