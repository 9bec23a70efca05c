-- Has a stream begin at the volume of the program's last one, as a user's desktop does.
components = {
  ["restore-stream"] = { "restore-stream.lua", type = "script/lua",
                         args = { properties = { ["restore-props"] = true, ["restore-target"] = false } } },
}
