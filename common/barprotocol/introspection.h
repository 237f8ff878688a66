#pragma once

namespace tarnwick::bar {

// What the bar's object tells of itself on the bus.
inline constexpr const char* menuBarIntrospection = R"xml(
  <interface name="org.tarnwick.MenuBar1">
    <!-- Every listed item, in order of registration: id, process of its owner, kind ("sni", "xembed",
         "native"), hint (item Id, WM_CLASS or autosave name), title, frame (x, y, width, height in
         points from the primary monitor's top-left corner), bus name, object path, menu path. Needs
         "accessibility". -->
    <method name="Items">
      <arg name="items" type="a(tisss(dddd)sss)" direction="out"/>
    </method>
    <!-- Opens an item's menu, or activates it when it has none; closes its menu. A press waits until
         the user holds no button, for half a minute at most, and takes the place of one that waits.
         Needs "accessibility". -->
    <method name="Press">
      <arg name="id" type="t" direction="in"/>
    </method>
    <!-- Activates an item, also one with a menu, after the same wait; what its owner opens itself is
         to come up at this point of the screen. -->
    <method name="PressAt">
      <arg name="id" type="t" direction="in"/>
      <arg name="point" type="(dd)" direction="in"/>
    </method>
    <method name="Cancel">
      <arg name="id" type="t" direction="in"/>
    </method>
    <!-- The item alone at width x height pixels (at most 2048 each): width, height and R, G, B, A
         bytes, premultiplied, row by row from the top. Needs "screen-capture". -->
    <method name="Render">
      <arg name="id" type="t" direction="in"/>
      <arg name="width" type="u" direction="in"/>
      <arg name="height" type="u" direction="in"/>
      <arg name="image" type="(uuay)" direction="out"/>
    </method>
    <!-- An item of the caller's own: the name its place is remembered under and its length in points
         (0 to 100000). It goes with the caller's connection. -->
    <method name="AddItem">
      <arg name="autosave_name" type="s" direction="in"/>
      <arg name="length" type="d" direction="in"/>
      <arg name="id" type="t" direction="out"/>
    </method>
    <method name="SetLength">
      <arg name="id" type="t" direction="in"/>
      <arg name="length" type="d" direction="in"/>
    </method>
    <!-- Moves an item immediately left of another, both of the caller's own, as a drag would: the order
         is remembered. While somebody holds an item it is done afterwards. -->
    <method name="PlaceLeftOf">
      <arg name="item" type="t" direction="in"/>
      <arg name="sibling" type="t" direction="in"/>
    </method>
    <method name="RemoveItem">
      <arg name="id" type="t" direction="in"/>
    </method>
    <!-- Where an item of the caller's own stands; needs no capability. -->
    <method name="OwnFrame">
      <arg name="id" type="t" direction="in"/>
      <arg name="frame" type="(dddd)" direction="out"/>
    </method>
    <!-- Size in points, width and height in pixels (at most 1024 each), R, G, B, A bytes,
         premultiplied, row by row from the top. Of a template only the alpha counts. No bytes and no
         size take the picture away. -->
    <method name="SetImage">
      <arg name="id" type="t" direction="in"/>
      <arg name="size" type="(dd)" direction="in"/>
      <arg name="width" type="u" direction="in"/>
      <arg name="height" type="u" direction="in"/>
      <arg name="pixels" type="ay" direction="in"/>
      <arg name="is_template" type="b" direction="in"/>
    </method>
    <!-- One event of the left button: 1 press, 2 drag, 3 release; at a point of the bar; with these
         modifiers and no others: Shift 1, Control 2, Alt 4, Super 8. Discarded without
         "accessibility". -->
    <method name="PostPointerEvent">
      <arg name="type" type="u" direction="in"/>
      <arg name="point" type="(dd)" direction="in"/>
      <arg name="modifiers" type="u" direction="in"/>
      <annotation name="org.freedesktop.DBus.Method.NoReply" value="true"/>
    </method>
    <!-- Capabilities: "accessibility", "screen-capture". The second asks the user and answers when
         the user has. -->
    <method name="HasAccess">
      <arg name="capability" type="s" direction="in"/>
      <arg name="granted" type="b" direction="out"/>
    </method>
    <method name="RequestAccess">
      <arg name="capability" type="s" direction="in"/>
      <arg name="granted" type="b" direction="out"/>
    </method>
    <!-- Shows a window of the bar: "privacy", "menu-bar". -->
    <method name="ShowPane">
      <arg name="pane" type="s" direction="in"/>
    </method>
    <!-- To the item's owner only: button 1 left, 3 right, on release; modifiers as above; where the
         pointer was. -->
    <signal name="ItemClicked">
      <arg name="id" type="t"/>
      <arg name="button" type="u"/>
      <arg name="modifiers" type="u"/>
      <arg name="point" type="(dd)"/>
    </signal>
    <!-- The list, a record or a frame is another one now. -->
    <signal name="ItemsChanged"/>
    <!-- A process that had no item has its first one. -->
    <signal name="ApplicationAppeared">
      <arg name="pid" type="i"/>
    </signal>
    <!-- To the connections it is about, once they have asked for something. -->
    <signal name="AccessChanged">
      <arg name="capability" type="s"/>
      <arg name="granted" type="b"/>
    </signal>
    <property name="Version" type="u" access="read">
      <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="const"/>
    </property>
    <property name="Frame" type="(dddd)" access="read"/>
  </interface>
)xml";

}  // namespace tarnwick::bar
