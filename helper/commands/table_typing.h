#pragma once

#include "helper/commands/table_rows.h"

// Commands that are keys on every desktop, because programs understand them and not desktops; and snippets.
namespace veltrix::table {

inline constexpr CommandRow kTypingRows[] = {
    on(54, kOnEvery, key(XKB_KEY_Return)),    on(55, kOnEvery, key(XKB_KEY_Escape)),
    on(56, kOnEvery, key(XKB_KEY_Tab)),       on(57, kOnEvery, key(XKB_KEY_Delete)),
    on(58, kOnEvery, key(XKB_KEY_BackSpace)), on(59, kOnEvery, key(XKB_KEY_Menu)),
    on(180, kOnEvery, SnippetAttempt{1}),     on(181, kOnEvery, SnippetAttempt{2}),
    on(182, kOnEvery, SnippetAttempt{3}),     on(183, kOnEvery, SnippetAttempt{4}),
    on(184, kOnEvery, SnippetAttempt{5}),     on(185, kOnEvery, SnippetAttempt{6}),
    on(186, kOnEvery, SnippetAttempt{7}),     on(187, kOnEvery, SnippetAttempt{8}),
    on(188, kOnEvery, SnippetAttempt{9}),     on(189, kOnEvery, SnippetAttempt{10}),
};

inline constexpr CommandRow kEditingRows[] = {
    on(32, kOnEvery, keys(kHoldControl, XKB_KEY_z)),               // Undo
    on(33, kOnEvery, keys(kHoldControl | kHoldShift, XKB_KEY_z)),  // Redo
    on(34, kOnEvery, keys(kHoldControl, XKB_KEY_x)),               // Cut
    on(35, kOnEvery, keys(kHoldControl, XKB_KEY_c)),               // Copy
    on(36, kOnEvery, keys(kHoldControl, XKB_KEY_v)),               // Paste
    on(37, kOnEvery, keys(kHoldControl | kHoldShift, XKB_KEY_v)),  // Paste as Plain Text
    on(38, kOnEvery, keys(kHoldControl, XKB_KEY_a)),               // Select All
    on(39, kOnEvery, keys(kHoldControl, XKB_KEY_f)),               // Find
    on(40, kOnEvery, key(XKB_KEY_F3)),                             // Find Next
    on(41, kOnEvery, keys(kHoldShift, XKB_KEY_F3)),                // Find Previous
    on(42, kOnEvery, keys(kHoldControl, XKB_KEY_h)),               // Replace
    on(43, kOnEvery, keys(kHoldControl, XKB_KEY_b)),               // Bold
    on(44, kOnEvery, keys(kHoldControl, XKB_KEY_i)),               // Italic
    on(45, kOnEvery, keys(kHoldControl, XKB_KEY_u)),               // Underline
    on(46, kOnEvery, keys(kHoldControl, XKB_KEY_n)),               // New Document
    on(47, kOnEvery, keys(kHoldControl, XKB_KEY_o)),               // Open Document
    on(48, kOnEvery, keys(kHoldControl, XKB_KEY_s)),               // Save
    on(49, kOnEvery, keys(kHoldControl | kHoldShift, XKB_KEY_s)),  // Save As
    on(50, kOnEvery, keys(kHoldControl, XKB_KEY_p)),               // Print
    on(51, kOnEvery, keys(kHoldControl, XKB_KEY_q)),               // Quit Application
};

inline constexpr CommandRow kReadingRows[] = {
    on(110, kOnEvery, keys(kHoldAlt, XKB_KEY_Left)),                // Go Back
    on(111, kOnEvery, keys(kHoldAlt, XKB_KEY_Right)),               // Go Forward
    on(112, kOnEvery, key(XKB_KEY_F5)),                             // Reload
    on(113, kOnEvery, keys(kHoldAlt, XKB_KEY_Home)),                // Home Page
    on(114, kOnEvery, keys(kHoldControl, XKB_KEY_t)),               // New Tab
    on(115, kOnEvery, keys(kHoldControl, XKB_KEY_w)),               // Close Tab
    on(116, kOnEvery, keys(kHoldControl | kHoldShift, XKB_KEY_t)),  // Reopen Closed Tab
    on(117, kOnEvery, keys(kHoldControl, XKB_KEY_Page_Down)),       // Next Tab
    on(118, kOnEvery, keys(kHoldControl, XKB_KEY_Page_Up)),         // Previous Tab
    on(119, kOnEvery, keys(kHoldControl, XKB_KEY_l)),               // Address Bar
    on(120, kOnEvery, keys(kHoldControl, XKB_KEY_d)),               // Bookmark This Page
    on(60, kOnEvery, key(XKB_KEY_Page_Up)),                         // Page Up
    on(61, kOnEvery, key(XKB_KEY_Page_Down)),                       // Page Down
    on(62, kOnEvery, keys(kHoldControl, XKB_KEY_Home)),             // Beginning of the Document
    on(63, kOnEvery, keys(kHoldControl, XKB_KEY_End)),              // End of the Document
    on(64, kOnEvery, keys(kHoldControl, XKB_KEY_plus)),             // Zoom In
    on(65, kOnEvery, keys(kHoldControl, XKB_KEY_minus)),            // Zoom Out
    on(66, kOnEvery, keys(kHoldControl, XKB_KEY_0)),                // Actual Size
};

}  // namespace veltrix::table
