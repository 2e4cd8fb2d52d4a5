//
// ItemTypes.h
//
// The list of item types: one row per type, in the order of the type list.
// Everything else about a type is in its class and the class's member table
// (model/Members.h); the enum, the type names, the factory and the picture's
// legend are made from these rows.
//
// ZUNO_KM_ITEM_TYPES(ROW) calls ROW(Name, Class, Marker, Colour, Legend) for
// each type:
//   Name    the type's name in documents, and its ItemType value
//   Class   its class
//   Marker  the shape of its family's marker in pictures (circle: taps,
//           hexagon: drags and walks, pentagon: skills and fire, diamond:
//           looks, square: scripted strokes, capsule: two-way controls,
//           bubble: tips)
//   Colour  its own colour in pictures and the editor
//   Legend  what a picture's legend says of it, in a few words
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_ITEMTYPES_H
#define ZUNO_KEYMAPMANAGER_MODEL_ITEMTYPES_H

// The colours stay apart for every eye: no two closer than 13 in CIE L*a*b*
// under simulated protanopia, deuteranopia and tritanopia (nor in full
// colour), and the members of a family no closer than 30. Every colour is
// light enough to read on the picture's dark grey.
// clang-format off
#define ZUNO_KM_ITEM_TYPES(ROW)                                                                 \
    ROW(Click, ClickConfigItem, Circle, "#10D090", "tap")                                       \
    ROW(BunchClick, BunchClickConfigItem, Circle, "#FFC0FF", "repeated taps (count)")           \
    ROW(Swipehold, SwipeholdConfigItem, Hexagon, "#A0FFA0", "drag: radius, direction keys, steps") \
    ROW(Fire, FireConfigItem, Pentagon, "#FF6040", "fire: drag area, invalid zone")             \
    ROW(Staring, StaringConfigItem, Diamond, "#FF00C0", "look range")                           \
    ROW(Spell, SpellConfigItem, Pentagon, "#FFC000", "skill: cast point and range, drag area")  \
    ROW(SpellCancel, SpellCancelConfigItem, Pentagon, "#608080", "cancel skill")                \
    ROW(RightWalk, MouseRightWalkConfigItem, Hexagon, "#FF60FF", "walk to pointer: measurement point") \
    ROW(Eye, EyeConfigItem, Diamond, "#FFFFFF", "look: direction keys")                         \
    ROW(Gravity, GravityConfigItem, Diamond, "#20FF60", "tilt: direction keys")                 \
    ROW(Macro, MacroConfigItem, Square, "#C0E0C0", "macro: numbered points it touches")         \
    ROW(Curve, CurveConfigItem, Square, "#4080C0", "stroke: start, points, end")                \
    ROW(LeftStickWalk, JoystickLeftWalkConfigItem, Hexagon, "#808020", "left stick: radius")    \
    ROW(RightStickEye, JoystickRightEyeConfigItem, Diamond, "#C000FF", "right stick: look range") \
    ROW(Wheel, WheelConfigItem, Capsule, "#80C060", "wheel: two directions")                    \
    ROW(Zoom, ZoomConfigItem, Capsule, "#E0D0E0", "pinch: two directions")                      \
    ROW(Observe, ObserveConfigItem, Diamond, "#A08060", "look while held")                      \
    ROW(Tip, TipConfigItem, Bubble, "#F060A0", "tip")                                          \
    /* a new type's row goes above this line */
// clang-format on

#endif  // ZUNO_KEYMAPMANAGER_MODEL_ITEMTYPES_H
