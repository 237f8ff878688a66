#pragma once

#include <cstdint>
#include <functional>

namespace tarnwick::KeyboardShortcuts {

// A key by its place: the virtual key code of that place on a keyboard with ANSI layout. Any number
// is a key; these are the ones with a name. Places that the ANSI layout lacks have codes of the
// platform's own, above 127.
struct Key {
  std::int64_t rawValue = 0;

  constexpr Key() = default;
  constexpr explicit Key(std::int64_t code) : rawValue(code) {}
  constexpr bool operator==(const Key&) const = default;

  static const Key a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z;
  static const Key zero, one, two, three, four, five, six, seven, eight, nine;
  static const Key capsLock, shift, function, control, option, command, rightCommand, rightOption,
      rightControl, rightShift;
  static const Key return_, backslash, backtick, comma, equal, minus, period, quote, semicolon,
      slash, space, tab, leftBracket, rightBracket;
  static const Key pageUp, pageDown, home, end, upArrow, rightArrow, downArrow, leftArrow, escape,
      delete_, deleteForward, help, mute, volumeUp, volumeDown;
  static const Key f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15, f16, f17, f18,
      f19, f20;
  static const Key keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8,
      keypad9, keypadClear, keypadDecimal, keypadDivide, keypadEnter, keypadEquals, keypadMinus,
      keypadMultiply, keypadPlus;
};

inline constexpr Key Key::a{0}, Key::b{11}, Key::c{8}, Key::d{2}, Key::e{14}, Key::f{3}, Key::g{5},
    Key::h{4}, Key::i{34}, Key::j{38}, Key::k{40}, Key::l{37}, Key::m{46}, Key::n{45}, Key::o{31},
    Key::p{35}, Key::q{12}, Key::r{15}, Key::s{1}, Key::t{17}, Key::u{32}, Key::v{9}, Key::w{13},
    Key::x{7}, Key::y{16}, Key::z{6};
inline constexpr Key Key::zero{29}, Key::one{18}, Key::two{19}, Key::three{20}, Key::four{21},
    Key::five{23}, Key::six{22}, Key::seven{26}, Key::eight{28}, Key::nine{25};
inline constexpr Key Key::capsLock{57}, Key::shift{56}, Key::function{63}, Key::control{59},
    Key::option{58}, Key::command{55}, Key::rightCommand{54}, Key::rightOption{61},
    Key::rightControl{62}, Key::rightShift{60};
inline constexpr Key Key::return_{36}, Key::backslash{42}, Key::backtick{50}, Key::comma{43},
    Key::equal{24}, Key::minus{27}, Key::period{47}, Key::quote{39}, Key::semicolon{41},
    Key::slash{44}, Key::space{49}, Key::tab{48}, Key::leftBracket{33}, Key::rightBracket{30};
inline constexpr Key Key::pageUp{116}, Key::pageDown{121}, Key::home{115}, Key::end{119},
    Key::upArrow{126}, Key::rightArrow{124}, Key::downArrow{125}, Key::leftArrow{123},
    Key::escape{53}, Key::delete_{51}, Key::deleteForward{117}, Key::help{114}, Key::mute{74},
    Key::volumeUp{72}, Key::volumeDown{73};
inline constexpr Key Key::f1{122}, Key::f2{120}, Key::f3{99}, Key::f4{118}, Key::f5{96},
    Key::f6{97}, Key::f7{98}, Key::f8{100}, Key::f9{101}, Key::f10{109}, Key::f11{103},
    Key::f12{111}, Key::f13{105}, Key::f14{107}, Key::f15{113}, Key::f16{106}, Key::f17{64},
    Key::f18{79}, Key::f19{80}, Key::f20{90};
inline constexpr Key Key::keypad0{82}, Key::keypad1{83}, Key::keypad2{84}, Key::keypad3{85},
    Key::keypad4{86}, Key::keypad5{87}, Key::keypad6{88}, Key::keypad7{89}, Key::keypad8{91},
    Key::keypad9{92}, Key::keypadClear{71}, Key::keypadDecimal{65}, Key::keypadDivide{75},
    Key::keypadEnter{76}, Key::keypadEquals{81}, Key::keypadMinus{78}, Key::keypadMultiply{67},
    Key::keypadPlus{69};

}  // namespace tarnwick::KeyboardShortcuts

template <>
struct std::hash<tarnwick::KeyboardShortcuts::Key> {
  std::size_t operator()(tarnwick::KeyboardShortcuts::Key key) const noexcept {
    return std::hash<std::int64_t>()(key.rawValue);
  }
};
