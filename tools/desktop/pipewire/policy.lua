-- Joins a stream to its sink. Its usual company is left out: it looks for sound cards, cameras and Bluetooth.
components = {}

for _, name in ipairs { "metadata", "default-nodes", "default-nodes-api", "mixer-api",
                        "si-node", "si-audio-adapter", "si-standard-link", "si-audio-endpoint" } do
  components[name] = { "libwireplumber-module-" .. name, type = "module" }
end

for _, name in ipairs { "access/access-default.lua", "static-endpoints.lua", "create-item.lua", "policy-node.lua" } do
  components[name] = { name, type = "script/lua", args = {} }
end
