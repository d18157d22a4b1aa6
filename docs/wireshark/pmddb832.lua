-- Wireshark dissector for the protocol between the Pmddb832 module and its scanners: the bulk
-- transfers of a conversation that "pmscan convert" wrote, or of a USB capture of a real scanner.
--
-- README.md beside this file says how to use it. Each field has a filter name: pmddb832.BLOCK.FIELD,
-- as in pmddb832.set_parameters.main_resolution.

local scanner = Proto("pmddb832", "Pmddb832 scanner")

-- What the scanner is asked, what it answers, and where each field lies in it. The text between the
-- two marks is made from the tables of the module and is not edited by hand.

-- tables begin
local NAMES = {
  colour_mode = {
    {0x00, "grey"},
    {0x01, "colour planes, plain"},
    {0x02, "colour planes"},
    {0x10, "channel 1"},
    {0x13, "colour"},
    {0x20, "channel 2"},
    {0x23, "colour, blue first"},
    {0x30, "channel 3"},
  },
  mirror = {{0x00, "off"}, {0x01, "on"}},
  gamma_code = {
    {0x01, "gamma 1.0"},
    {0x02, "gamma 2.2"},
    {0x00, "gamma 3.0"},
    {0x10, "gamma 2.8"},
    {0x20, "gamma 2.5"},
  },
  option_unit = {{0x00, "off, flatbed"}, {0x01, "on"}, {0x02, "on, second side"}},
  focus_position = {{0xFF, "automatic"}},
  channel = {{0x52, "red"}, {0x47, "green"}, {0x42, "blue"}, {0x4D, "all channels"}},
  header_status = {{0x02, "knows the extended commands"}},
  header_status_2 = {{0x80, "error", trouble = true}},
  main_status = {
    {0x80, "fatal error", trouble = true},
    {0x20, "feeder variant"},
    {0x10, "second feeder capability"},
    {0x02, "warming up", trouble = true},
  },
  feeder = {
    {0x80, "installed"},
    {0x40, "error", trouble = true},
    {0x08, "empty", trouble = true},
    {0x04, "cover open", trouble = true},
    {0x02, "paper jam", trouble = true},
  },
  transparency_unit = {
    {0x80, "installed"},
    {0x40, "error", trouble = true},
    {0x02, "fault", trouble = true},
  },
  outcome = {{0x01, "no focus found", trouble = true}},
  feeder_capabilities = {
    {0x20, "feeder variant"},
    {0x10, "second capability"},
    {0x08, "third capability"},
  },
  main_status_2 = {
    {0x80, "fatal error", trouble = true},
    {0x40, "not ready", trouble = true},
    {0x02, "warming up", trouble = true},
  },
  start_byte = {{0x02, "STX"}},
  status = {{0x80, "error", trouble = true}},
  status_2 = {{0x80, "error", trouble = true}, {0x40, "no new start"}, {0x20, "last block"}},
}

local COMMANDS = {
  [0x1B3F] = {name = "product name", reply = "product"},
  [0x1B40] = {name = "reset", reply = "acknowledge"},
  [0x1B41] = {name = "scan area", parameters = 8,
    {name = "left", offset = 0, width = 2, shape = "number", unit = "pixels"},
    {name = "top", offset = 2, width = 2, shape = "number", unit = "lines"},
    {name = "width", offset = 4, width = 2, shape = "number", unit = "pixels"},
    {name = "height", offset = 6, width = 2, shape = "number", unit = "lines"}},
  [0x1B42] = {name = "halftone", parameters = 1,
    {name = "halftone code", offset = 0, shape = "code"}},
  [0x1B43] = {name = "colour mode", parameters = 1,
    {name = "colour mode", offset = 0, shape = "choice", names = NAMES.colour_mode}},
  [0x1B44] = {name = "data format", parameters = 1,
    {name = "bits per sample", offset = 0, shape = "number"}},
  [0x1B46] = {name = "condition", reply = "condition"},
  [0x1B47] = {name = "start scan", reply = "block_header"},
  [0x1B48] = {name = "zoom", parameters = 2,
    {name = "main zoom", offset = 0, shape = "number", unit = "%"},
    {name = "sub zoom", offset = 1, shape = "number", unit = "%"}},
  [0x1B49] = {name = "level and identity", reply = "level"},
  [0x1B4B] = {name = "mirror", parameters = 1,
    {name = "mirror", offset = 0, shape = "choice", names = NAMES.mirror}},
  [0x1B4C] = {name = "brightness", parameters = 1,
    {name = "brightness", offset = 0, shape = "signed"}},
  [0x1B4D] = {name = "colour correction", parameters = 1,
    {name = "colour correction", offset = 0, shape = "choice", names = NAMES.mirror}},
  [0x1B51] = {name = "sharpness", parameters = 1,
    {name = "sharpness", offset = 0, shape = "signed"}},
  [0x1B52] = {name = "resolution", parameters = 4,
    {name = "main resolution", offset = 0, width = 2, shape = "number", unit = "dpi"},
    {name = "sub resolution", offset = 2, width = 2, shape = "number", unit = "dpi"}},
  [0x1B5A] = {name = "gamma code", parameters = 1,
    {name = "gamma code", offset = 0, shape = "choice", names = NAMES.gamma_code}},
  [0x1B64] = {name = "lines per block", parameters = 1,
    {name = "lines per block", offset = 0, shape = "number"}},
  [0x1B65] = {name = "option unit", parameters = 1,
    {name = "option unit", offset = 0, shape = "choice", names = NAMES.option_unit}},
  [0x1B66] = {name = "status", reply = "status_reply"},
  [0x1B67] = {name = "parameter g", parameters = 1,
    {name = "parameter g", offset = 0, shape = "number"}},
  [0x1B6D] = {name = "colour matrix", parameters = 9},
  [0x1B70] = {name = "focus position", parameters = 1,
    {name = "focus position", offset = 0, shape = "position", names = NAMES.focus_position}},
  [0x1B71] = {name = "focus found", reply = "focus"},
  [0x1B73] = {name = "enhancement", parameters = 1,
    {name = "enhancement", offset = 0, shape = "number"}},
  [0x1B74] = {name = "threshold", parameters = 1,
    {name = "threshold", offset = 0, shape = "number"}},
  [0x1B7A] = {name = "gamma table", parameters = 257,
    {name = "channel", offset = 0, shape = "choice", names = NAMES.channel}},
  [0x1C46] = {name = "status", reply = "status"},
  [0x1C47] = {name = "start transfer", reply = "transfer_header"},
  [0x1C49] = {name = "identity", reply = "identity"},
  [0x1C57] = {name = "set parameters", parameters = 64,
    {name = "main resolution", offset = 0, width = 4, shape = "number", unit = "dpi"},
    {name = "sub resolution", offset = 4, width = 4, shape = "number", unit = "dpi"},
    {name = "area left", offset = 8, width = 4, shape = "number", unit = "pixels"},
    {name = "area top", offset = 12, width = 4, shape = "number", unit = "lines"},
    {name = "area width", offset = 16, width = 4, shape = "number", unit = "pixels"},
    {name = "area height", offset = 20, width = 4, shape = "number", unit = "lines"},
    {name = "colour mode", offset = 24, shape = "choice", names = NAMES.colour_mode},
    {name = "bits per sample", offset = 25, shape = "number"},
    {name = "option unit", offset = 26, shape = "choice", names = NAMES.option_unit},
    {name = "parameter g", offset = 27, shape = "number"},
    {name = "lines per block", offset = 28, shape = "number"},
    {name = "gamma code", offset = 29, shape = "choice", names = NAMES.gamma_code},
    {name = "brightness", offset = 30, shape = "signed"},
    {name = "colour correction", offset = 31, shape = "choice", names = NAMES.mirror},
    {name = "halftone code", offset = 32, shape = "code"},
    {name = "mode override", offset = 33, shape = "code"},
    {name = "enhancement", offset = 34, shape = "number"},
    {name = "sharpness", offset = 35, shape = "signed"},
    {name = "mirror", offset = 36, shape = "choice", names = NAMES.mirror},
    {name = "option parameter", offset = 37, shape = "code"}},
}

local REPLIES = {
  acknowledge = {size = 1},
  level = {size = 4, declares_data = true,
    {name = "header status", offset = 1, shape = "flags", names = NAMES.header_status}},
  product = {size = 4, declares_data = true,
    {name = "product name", offset = 12, width = 16, shape = "text"}},
  status_reply = {size = 4, declares_data = true,
    {name = "header status", offset = 1, shape = "flags", names = NAMES.header_status_2},
    {name = "main status", offset = 4, shape = "flags", names = NAMES.main_status},
    {name = "feeder", offset = 5, shape = "flags", names = NAMES.feeder},
    {name = "feeder width", offset = 6, width = 2, shape = "number", unit = "pixels"},
    {name = "feeder height", offset = 8, width = 2, shape = "number", unit = "pixels"},
    {name = "transparency unit", offset = 10, shape = "flags", names = NAMES.transparency_unit},
    {name = "transparency unit width", offset = 11, width = 2, shape = "number", unit = "pixels"},
    {name = "transparency unit height", offset = 13, width = 2, shape = "number", unit = "pixels"}},
  focus = {size = 4, declares_data = true,
    {name = "outcome", offset = 4, shape = "flags", names = NAMES.outcome},
    {name = "focus position", offset = 5, shape = "position"}},
  condition = {size = 4},
  identity = {size = 80,
    {name = "command level", offset = 0, width = 2, shape = "text"},
    {name = "basic resolution", offset = 4, width = 4, shape = "number", unit = "dpi"},
    {name = "minimum resolution, halved", offset = 8, width = 2, shape = "number", unit = "dpi"},
    {name = "maximum resolution, doubled", offset = 12, width = 4, shape = "number", unit = "dpi"},
    {name = "flatbed width", offset = 20, width = 4, shape = "number", unit = "pixels"},
    {name = "flatbed height", offset = 24, width = 4, shape = "number", unit = "pixels"},
    {name = "feeder width", offset = 28, width = 4, shape = "number", unit = "pixels"},
    {name = "feeder height", offset = 32, width = 4, shape = "number", unit = "pixels"},
    {name = "transparency unit width", offset = 36, width = 4, shape = "number", unit = "pixels"},
    {name = "transparency unit height", offset = 40, width = 4, shape = "number", unit = "pixels"},
    {name = "feeder capabilities", offset = 44, shape = "flags", names = NAMES.feeder_capabilities},
    {name = "product name", offset = 46, width = 16, shape = "text"}},
  status = {size = 16,
    {name = "main status", offset = 0, shape = "flags", names = NAMES.main_status_2},
    {name = "feeder", offset = 1, shape = "flags", names = NAMES.feeder},
    {name = "transparency unit", offset = 2, shape = "flags", names = NAMES.transparency_unit}},
  transfer_header = {size = 14,
    {name = "start byte", offset = 0, shape = "choice", names = NAMES.start_byte},
    {name = "status", offset = 1, shape = "flags", names = NAMES.status},
    {name = "full block", offset = 2, width = 4, shape = "number", unit = "bytes"},
    {name = "full blocks", offset = 6, width = 4, shape = "number"},
    {name = "last block", offset = 10, width = 4, shape = "number", unit = "bytes"}},
  block_header = {size = 6,
    {name = "start byte", offset = 0, shape = "choice", names = NAMES.start_byte},
    {name = "status", offset = 1, shape = "flags", names = NAMES.status_2},
    {name = "line", offset = 2, width = 2, shape = "number", unit = "bytes"},
    {name = "lines", offset = 4, width = 2, shape = "number"}},
}

local CONTROL_BYTES = {
  [0x06] = "ACK",
  [0x0C] = "FF eject the page",
  [0x15] = "NAK",
  [0x18] = "CAN cancel",
  [0x19] = "EM feed a page",
}
-- tables end

local ESC, FS = 0x1B, 0x1C
local STX, ACK, FF, NAK, CAN, EM = 0x02, 0x06, 0x0C, 0x15, 0x18, 0x19
local HEADER_BYTES = 4          -- of an information reply: start byte, status, count of data
local TABLE_BYTES, MATRIX_BYTES = 257, 9
local ERROR_BIT, LAST_BIT = 0x80, 0x20  -- of the status of a block

---------------------------------------------------------------------------------------------------
-- Fields

local fields = {}

local function declare(field)
  fields[#fields + 1] = field
  return field
end

local function slug(text)
  return (text:lower():gsub("[^%w]+", "_"))
end

local function names_by_value(row)
  local by_value = {}
  for _, name in ipairs(row.names or {}) do by_value[name[1]] = name[2] end
  return by_value
end

local function capitalised(text)
  return text:sub(1, 1):upper() .. text:sub(2)
end

local NUMBER = {[1] = ProtoField.uint8, [2] = ProtoField.uint16, [4] = ProtoField.uint32}

local function declare_named(row, filter)
  local names = row.names and names_by_value(row)
  return NUMBER[row.width](filter, capitalised(row.name), base.HEX, names)
end

local DECLARE = {
  number = function(row, filter)
    if row.unit == nil then return NUMBER[row.width](filter, capitalised(row.name), base.DEC) end
    return NUMBER[row.width](filter, capitalised(row.name), base.UNIT_STRING, {" " .. row.unit})
  end,
  signed = function(row, filter)
    return ProtoField.int8(filter, capitalised(row.name), base.DEC)
  end,
  text = function(row, filter) return ProtoField.string(filter, capitalised(row.name)) end,
  code = declare_named,
  position = declare_named,
  choice = declare_named,
  flags = function(row, filter)
    row.bits = {}
    for i, name in ipairs(row.names) do
      row.bits[i] = declare(ProtoField.bool(filter .. "." .. slug(name[2]), name[2],
                                            8 * row.width, nil, name[1]))
    end
    return NUMBER[row.width](filter, capitalised(row.name), base.HEX)
  end,
}

local function declare_rows(block, rows)
  for _, row in ipairs(rows) do
    row.width = row.width or 1
    row.field = declare(DECLARE[row.shape](row, "pmddb832." .. block .. "." .. slug(row.name)))
  end
end

local COMMAND_NAMES = {}
for key, command in pairs(COMMANDS) do
  local prefix = math.floor(key / 256) == ESC and "ESC " or "FS "
  command.title = prefix .. string.char(key % 256) .. " " .. command.name
  command.reply = command.reply or "acknowledge"
  COMMAND_NAMES[key] = command.title
  declare_rows(slug(command.name), command)
end
for name, reply in pairs(REPLIES) do declare_rows(name, reply) end

local function plain(kind, filter, label, ...)
  return declare(ProtoField[kind]("pmddb832." .. filter, label, ...))
end

local f = {
  command = plain("uint16", "command", "Command", base.HEX, COMMAND_NAMES),
  control = plain("uint8", "control", "Control byte", base.HEX, CONTROL_BYTES),
  answer = plain("uint8", "answer", "Answer", base.HEX, CONTROL_BYTES),
  asked = plain("framenum", "asked_in", "Asked in", base.NONE, frametype.REQUEST),
  start = plain("uint8", "reply.start", "Start byte", base.HEX, {[STX] = "STX"}),
  reply_status = plain("uint8", "reply.status", "Status", base.HEX),
  count = plain("uint16", "reply.count", "Data", base.UNIT_STRING, {" byte", " bytes"}),
  level = plain("string", "level.command_level", "Command level"),
  resolution = plain("uint16", "level.resolution", "Resolution", base.UNIT_STRING, {" dpi"}),
  width = plain("uint16", "level.width", "Largest width", base.UNIT_STRING, {" pixel", " pixels"}),
  height = plain("uint16", "level.height", "Largest height", base.UNIT_STRING, {" line", " lines"}),
  gamma_table = plain("bytes", "gamma_table.table", "Table"),
  matrix = plain("bytes", "colour_matrix.matrix", "Matrix"),
  block_number = plain("uint32", "block.number", "Block"),
  block_count = plain("uint32", "block.count", "Blocks in the picture"),
  block_lines = plain("uint32", "block.lines", "Lines"),
  block_bytes = plain("uint32", "block.bytes", "Bytes"),
  block_status = plain("uint8", "block.status", "Status", base.HEX),
  block_data = plain("bytes", "block.data", "Data"),
  part = plain("bytes", "part", "Part of a longer message"),
  unexpected = plain("bytes", "unexpected", "Unexpected bytes"),
}
scanner.fields = fields

local usb_bus = Field.new("usb.bus_id")
local usb_device = Field.new("usb.device_address")
local usb_direction = Field.new("usb.endpoint_address.direction")
local usb_length = Field.new("usb.data_len")
local packet_comment = Field.new("frame.comment")
local usb_kind = Field.new("usb.transfer_type")
local BULK = 3
local IN_PROGRESS = -115  -- Linux tells so where a transfer begins
local usb_results = {Field.new("usb.usbd_status"), Field.new("usb.urb_status")}

local e = {}
local experts = {}
for name, row in pairs({
  refused = {"The scanner did not acknowledge", "RESPONSE_CODE", "ERROR"},
  trouble = {"The scanner reports trouble", "RESPONSE_CODE", "WARN"},
  spoiled = {"The reply does not begin with STX", "MALFORMED", "ERROR"},
  stray = {"Bytes that nothing asked for", "PROTOCOL", "ERROR"},
  unknown = {"A command that no scanner knows", "PROTOCOL", "ERROR"},
  not_zero = {"A byte that must be 0 is not", "PROTOCOL", "WARN"},
  failed = {"The transfer failed", "RESPONSE_CODE", "ERROR"},
  cut = {"The data were not kept in the capture", "UNDECODED", "NOTE"},
}) do
  e[name] = ProtoExpert.new("pmddb832." .. name, row[1], expert.group[row[2]],
                            expert.severity[row[3]])
  experts[#experts + 1] = e[name]
end
scanner.experts = experts

scanner.prefs.device = Pref.uint("Device address", 0,
    "USB address of the scanner; 0 recognises it by its first command")

---------------------------------------------------------------------------------------------------
-- Following a conversation. Each packet is read once, in its order, and becomes a list of items;
-- whenever it is shown again, the items are shown again.

local devices = {}  -- by bus and address: what was said so far and what comes next
local packets = {}  -- by frame number: the items

function scanner.init()
  devices = {}
  packets = {}
end

local function byte_at(bytes, offset)
  return bytes:byte(offset + 1) or 0
end

local function number_at(bytes, offset, width)
  local value = 0
  for i = width - 1, 0, -1 do value = value * 256 + byte_at(bytes, offset + i) end
  return value
end

local function has_bit(value, bit_value)
  return math.floor(value / bit_value) % 2 == 1
end

local function value_of(rows, name, bytes)
  for _, row in ipairs(rows) do
    if row.name == name then return number_at(bytes, row.offset, row.width) end
  end
  error("the tables have no field '" .. name .. "'")
end

local SET_PARAMETERS, SCAN_AREA = COMMANDS[0x1C57], COMMANDS[0x1B41]
local LINES_PER_BLOCK, START_SCAN = COMMANDS[0x1B64], COMMANDS[0x1B47]

local function new_plan()
  return {lines_per_block = 0, height = 0, lines_at_once = false, repeated = false}
end

local function new_device()
  -- next: what comes next; got: its bytes so far; have: how many bytes of a block came
  return {next = "nothing", got = "", have = 0, plan = new_plan()}
end

local function expect(device, what, size)
  device.next, device.size, device.got, device.have = what, size or 0, "", 0
end

local function block_count(device)
  local blocks, plan = device.blocks, device.plan
  if blocks.extended then return blocks.full + (blocks.last_bytes > 0 and 1 or 0) end
  if not plan.lines_at_once then return plan.height end
  if plan.lines_per_block == 0 then return 0 end
  return math.floor((plan.height + plan.lines_per_block - 1) / plan.lines_per_block)
end

local function expect_next_block(device)
  local blocks, plan = device.blocks, device.plan
  if not blocks.extended then
    return expect(device, "block_header", plan.lines_at_once and 6 or 4)
  end
  local lines_left = math.max(plan.height - blocks.full * plan.lines_per_block, 0)
  blocks.is_last = blocks.number > blocks.full
  blocks.bytes = blocks.is_last and blocks.last_bytes or blocks.block_bytes
  blocks.lines = blocks.is_last and lines_left or plan.lines_per_block
  expect(device, "block", blocks.bytes + 1)
end

local function is_refused(header)
  return byte_at(header, 0) ~= STX or has_bit(byte_at(header, 1), ERROR_BIT)
end

local function begin_extended_blocks(device, header)
  local rows = REPLIES.transfer_header
  expect(device, "nothing")
  if is_refused(header) then return end
  device.blocks = {
    extended = true, number = 1,
    block_bytes = value_of(rows, "full block", header),
    full = value_of(rows, "full blocks", header),
    last_bytes = value_of(rows, "last block", header),
  }
  expect_next_block(device)
end

local function take_block_header(device, header)
  local blocks = device.blocks
  blocks.status = byte_at(header, 1)
  blocks.lines = device.plan.lines_at_once and number_at(header, 4, 2) or 1
  blocks.bytes = number_at(header, 2, 2) * blocks.lines
  blocks.is_last = has_bit(blocks.status, LAST_BIT)
  if byte_at(header, 0) == STX and blocks.lines > 0 and blocks.bytes > 0 then
    expect(device, "block", blocks.bytes)
  else
    expect(device, "nothing")
  end
end

-- With blocks of several lines the reply to the start is the header of the first block.
local function begin_standard_blocks(device, header)
  expect(device, "nothing")
  device.plan.repeated = is_refused(header)
  if device.plan.repeated then return end
  device.blocks = {extended = false, number = 1}
  if device.plan.lines_at_once then return take_block_header(device, header) end
  expect_next_block(device)
end

local function begin_command(device, key, frame)
  local command, plan = COMMANDS[key], device.plan
  device.command, device.asked, device.blocks = command, frame, nil
  if command == nil then return expect(device, "nothing") end
  if command.reply == "acknowledge" then
    if not command.parameters then device.plan = new_plan() end
    return expect(device, command.parameters and "letter_answer" or "answer", 1)
  end
  if command ~= START_SCAN or not plan.repeated or plan.lines_at_once then
    return expect(device, "reply", REPLIES[command.reply].size)
  end
  plan.repeated = false
  device.blocks = {extended = false, number = 1}
  expect_next_block(device)
end

local function note_parameters(device, bytes)
  local plan = device.plan
  if device.command == SET_PARAMETERS then
    plan.lines_per_block = value_of(SET_PARAMETERS, "lines per block", bytes)
    plan.height = value_of(SET_PARAMETERS, "area height", bytes)
  elseif device.command == SCAN_AREA then
    plan.height = value_of(SCAN_AREA, "height", bytes)
    plan.repeated = false
  elseif device.command == LINES_PER_BLOCK then
    plan.lines_per_block = byte_at(bytes, 0)
    plan.lines_at_once = true
  end
end

local function add(items, kind, offset, length, item)
  item = item or {}
  item.kind, item.offset, item.length = kind, offset, length
  items[#items + 1] = item
  return item
end

-- Puts what is there to the message that is expected. How much that was, and whether all is there.
local function collect(device, packet, offset)
  local part = packet.bytes:sub(offset + 1, offset + device.size - #device.got)
  device.got = device.got .. part
  return #part, #device.got == device.size
end

-- Items of what the host sent.

local function looks_like_command(bytes)
  return #bytes == 2 and COMMANDS[256 * byte_at(bytes, 0) + byte_at(bytes, 1)] ~= nil
end

local function take_parameters(device, packet, offset, items)
  local take, is_whole = collect(device, packet, offset)
  local item = add(items, "part", offset, take, {command = device.command})
  if is_whole then
    item.kind, item.bytes = "parameters", device.got
    note_parameters(device, device.got)
    expect(device, "answer", 1)
  end
  return offset + take
end

local function take_command(device, packet, offset, items, frame)
  local prefix = device.prefix or byte_at(packet.bytes, offset)
  local letter_at = device.prefix and offset or offset + 1
  if letter_at >= #packet.bytes then
    device.prefix = prefix
    add(items, "part", offset, 1)
    return letter_at
  end
  local key = 256 * prefix + byte_at(packet.bytes, letter_at)
  begin_command(device, key, frame)
  add(items, "command", offset, letter_at + 1 - offset, {key = key, command = device.command})
  device.prefix = nil
  return letter_at + 1
end

local function take_control(device, byte, offset, items)
  local item = add(items, "control", offset, 1)
  if device.next == "block_answer" and byte == ACK then
    device.blocks.number = device.blocks.number + 1
    expect_next_block(device)
  elseif byte == CAN or byte == EM or byte == FF then
    device.blocks, device.command = nil, nil
    expect(device, "answer", 1)
  else
    item.is_stray = true
  end
  return offset + 1
end

local function follow_host(device, packet, items, frame)
  local offset = 0
  while offset < #packet.bytes do
    local byte = byte_at(packet.bytes, offset)
    local rest = packet.bytes:sub(offset + 1)
    if device.next == "parameters" and (#rest == device.size or not looks_like_command(rest)) then
      offset = take_parameters(device, packet, offset, items)
    elseif device.prefix ~= nil or byte == ESC or byte == FS then
      offset = take_command(device, packet, offset, items, frame)
    elseif CONTROL_BYTES[byte] ~= nil and byte ~= NAK then
      offset = take_control(device, byte, offset, items)
    else
      add(items, "stray", offset, #rest)
      return
    end
  end
end

-- Items of what the scanner sent.

local function tell_reply(device, item, reply, base)
  item.kind, item.reply, item.bytes, item.base = "reply", reply, device.got, base
end

-- What is to be done with a message that is whole.
local FINISH = {
  letter_answer = function(device, item)
    item.kind = "answer"
    local is_accepted = byte_at(device.got, 0) == ACK
    expect(device, is_accepted and "parameters" or "nothing", device.command.parameters)
  end,
  answer = function(device, item)
    item.kind = "answer"
    expect(device, "nothing")
  end,
  reply = function(device, item)
    local reply, got = device.command.reply, device.got
    local data_bytes = number_at(got, 2, 2)
    tell_reply(device, item, reply, 0)
    if reply == "transfer_header" then return begin_extended_blocks(device, got) end
    if reply == "block_header" then return begin_standard_blocks(device, got) end
    local has_data = REPLIES[reply].declares_data and byte_at(got, 0) == STX and data_bytes > 0
    expect(device, has_data and "reply_data" or "nothing", data_bytes)
  end,
  reply_data = function(device, item)
    tell_reply(device, item, device.command.reply, HEADER_BYTES)
    expect(device, "nothing")
  end,
  block_header = function(device, item)
    tell_reply(device, item, "block_header", 0)
    item.block = device.blocks.number
    take_block_header(device, device.got)
  end,
}

local function take_message(device, packet, offset, items)
  local wanted = math.min(device.size - #device.got, packet.reported - offset)
  local item = add(items, "part", offset, wanted, {command = device.command, asked = device.asked})
  if offset + wanted > #packet.bytes then
    item.kind, item.length = "cut", #packet.bytes - offset
    expect(device, "nothing")
    return offset + wanted
  end
  local _, is_whole = collect(device, packet, offset)
  if is_whole then
    FINISH[device.next](device, item)
  elseif device.got == string.char(NAK) and wanted == packet.reported then
    item.kind = "answer"  -- in the place of a reply
    expect(device, "nothing")
  end
  return offset + wanted
end

-- The status of an extended block is its last byte; that of a standard block was in its header.
local function finish_block(device, packet, item, last_at)
  local blocks = device.blocks
  item.is_whole = true
  item.status = blocks.status
  if blocks.extended then
    item.has_status_byte = last_at < #packet.bytes
    item.status = item.has_status_byte and byte_at(packet.bytes, last_at) or packet.last_byte
  end
  local has_failed = blocks.extended and item.status ~= nil and has_bit(item.status, ERROR_BIT)
  expect(device, (blocks.is_last or has_failed) and "nothing" or "block_answer")
end

local function take_block(device, packet, offset, items)
  local blocks = device.blocks
  local take = math.min(device.size - device.have, packet.reported - offset)
  device.have = device.have + take
  local item = add(items, "block", offset, math.max(math.min(take, #packet.bytes - offset), 0), {
    reported = take, number = blocks.number, count = block_count(device), lines = blocks.lines,
    data_bytes = blocks.bytes, asked = device.asked,
  })
  if device.have == device.size then finish_block(device, packet, item, offset + take - 1) end
  return offset + take
end

local CAN_BE_READ = {letter_answer = true, answer = true, reply = true, reply_data = true,
                     block_header = true}

local function follow_scanner(device, packet, items)
  local offset = 0
  while offset < packet.reported do
    if device.next == "block" then
      offset = take_block(device, packet, offset, items)
    elseif CAN_BE_READ[device.next] then
      offset = take_message(device, packet, offset, items)
    else
      add(items, "stray", offset, #packet.bytes - offset)
      return
    end
  end
end

---------------------------------------------------------------------------------------------------
-- Showing the items

local function names_set(row, value)
  local set = {}
  for _, name in ipairs(row.names) do
    if has_bit(value, name[1]) then set[#set + 1] = name[2] end
  end
  return table.concat(set, ", ")
end

local function show_flags(tree, row, range, value)
  local item = tree:add_le(row.field, range)
  for i, name in ipairs(row.names) do
    item:add_le(row.bits[i], range)
    if name.trouble and has_bit(value, name[1]) then
      item:add_proto_expert_info(e.trouble, capitalised(row.name) .. ": " .. name[2])
    end
  end
  if value > 0 then item:append_text(" (" .. names_set(row, value) .. ")") end
end

local function show_field(tree, row, range)
  if row.shape == "flags" then
    show_flags(tree, row, range, range:le_uint())
  elseif row.shape == "text" then
    tree:add(row.field, range, (range:string():gsub("[%z ]+$", "")))
  elseif row.shape == "position" and range:uint() ~= 0xFF then
    tree:add_le(row.field, range):append_text(" (position " .. range:uint() - 0x40 .. ")")
  else
    tree:add_le(row.field, range)
  end
end

-- Shows the fields of `rows` that lie in the range, whose first byte is byte `first` of the block.
local function show_fields(tree, rows, range, first)
  local shown = {}
  for _, row in ipairs(rows) do
    local at = row.offset - first
    if at >= 0 and at + row.width <= range:len() then
      show_field(tree, row, range(at, row.width))
      for i = at, at + row.width - 1 do shown[i] = true end
    end
  end
  return shown
end

local function show_level_data(tree, range)
  if range:len() < 10 then return end
  local count = math.floor((range:len() - 7) / 3)
  tree:add(f.level, range(0, 2))
  for i = 0, count - 1 do tree:add_le(f.resolution, range(3 + 3 * i, 2)) end
  tree:add_le(f.width, range(3 + 3 * count, 2))
  tree:add_le(f.height, range(5 + 3 * count, 2))
end

local SUMMARY_FIELDS = {
  set_parameters = {"main resolution", "area width", "area height", "bits per sample"},
  scan_area = {"left", "top", "width", "height"},
}

local function summary_value(row, bytes)
  local value = number_at(bytes, row.offset, row.width)
  if row.shape == "choice" then return names_by_value(row)[value] or tostring(value) end
  if row.shape == "signed" and value > 127 then value = value - 256 end
  return tostring(value) .. (row.unit and " " .. row.unit or "")
end

local function parameters_summary(command, bytes)
  local wanted = SUMMARY_FIELDS[slug(command.name)]
  local texts = {}
  for _, row in ipairs(command) do
    local is_wanted = wanted == nil
    for _, name in ipairs(wanted or {}) do is_wanted = is_wanted or name == row.name end
    if is_wanted then
      local label = #command > 1 and row.name .. " " or ""
      texts[#texts + 1] = label .. summary_value(row, bytes)
    end
  end
  local values = #texts > 0 and table.concat(texts, ", ") or #bytes .. " bytes"
  return command.title .. ": " .. values
end

local SHOW = {}

function SHOW.command(tree, range, item)
  local shown = tree:add(f.command, range, item.key)
  if item.command ~= nil then return item.command.title end
  shown:add_proto_expert_info(e.unknown)
  return string.format("unknown command 0x%04X", item.key)
end

function SHOW.parameters(tree, range, item)
  local command = item.command
  local block = tree:add(scanner, range, "Parameters of " .. command.title)
  local shown = show_fields(block, command, range, 0)
  if command.parameters == TABLE_BYTES then
    block:add(f.gamma_table, range(1))
  elseif command.parameters == MATRIX_BYTES then
    block:add(f.matrix, range)
  else
    for i = 0, range:len() - 1 do
      if not shown[i] and range(i, 1):uint() ~= 0 then
        block:add_proto_expert_info(e.not_zero, "Byte " .. i .. " must be 0")
      end
    end
  end
  return parameters_summary(command, item.bytes)
end

function SHOW.control(tree, range, item)
  local shown = tree:add(f.control, range)
  if item.is_stray then shown:add_proto_expert_info(e.stray) end
  return CONTROL_BYTES[range:uint()]
end

function SHOW.answer(tree, range, item)
  local shown = tree:add(f.answer, range)
  if item.asked ~= nil then tree:add(f.asked, item.asked):set_generated() end
  local value = range:uint()
  local text = CONTROL_BYTES[value] or string.format("0x%02X instead of ACK", value)
  if value ~= ACK then shown:add_proto_expert_info(e.refused) end
  if item.command == nil then return text end
  return text .. " to " .. item.command.title
end

local function show_header(block, range)
  block:add(f.start, range(0, 1))
  block:add(f.reply_status, range(1, 1))
  block:add_le(f.count, range(2, 2))
end

-- What a reply comes to in one line: its texts and its flags; of headers the numbers too.
local function reply_summary(item)
  local is_header = item.reply == "transfer_header" or item.reply == "block_header"
  local texts = {}
  for _, row in ipairs(REPLIES[item.reply]) do
    local at = row.offset - item.base
    local is_here = at >= 0 and at + row.width <= #item.bytes
    local value = is_here and row.shape ~= "text" and number_at(item.bytes, at, row.width) or 0
    if is_here and row.shape == "text" then
      texts[#texts + 1] = (item.bytes:sub(at + 1, at + row.width):gsub("[%z ]+$", ""))
    elseif is_here and row.shape == "flags" and value > 0 then
      texts[#texts + 1] = row.name .. " " .. names_set(row, value)
    elseif is_here and is_header and row.shape == "number" then
      texts[#texts + 1] = row.name .. " " .. value .. (row.unit and " " .. row.unit or "")
    end
  end
  if item.reply == "level" and item.base > 0 then texts[1] = item.bytes:sub(1, 2) end
  return table.concat(texts, ", ")
end

function SHOW.reply(tree, range, item)
  local is_header = item.base == 0
      and (REPLIES[item.reply].declares_data or item.reply == "condition")
  local what = item.block and "header of block " .. item.block
      or "reply to " .. item.command.title
  if is_header then what = "header of the " .. what end
  local block = tree:add(scanner, range, capitalised(what))
  if item.asked ~= nil then block:add(f.asked, item.asked):set_generated() end
  if is_header then show_header(block, range) end
  show_fields(block, REPLIES[item.reply], range, item.base)
  if item.reply == "level" and item.base > 0 then show_level_data(block, range) end
  local begins_with_stx = is_header or item.reply:find("header") ~= nil
  if begins_with_stx and range(0, 1):uint() ~= STX then
    block:add_proto_expert_info(e.spoiled)
  end
  local summary = reply_summary(item)
  return what .. (summary ~= "" and ": " .. summary or "")
end

local function status_text(item)
  if not item.is_whole then return "goes on" end
  if item.status == nil then return "status not kept" end
  if has_bit(item.status, ERROR_BIT) then return "status error" end
  return has_bit(item.status, LAST_BIT) and "status ok, last block" or "status ok"
end

local function block_text(item)
  local of = item.count > 0 and " of " .. item.count or ""
  local lines = item.lines > 0 and string.format(", %d line%s", item.lines,
                                                 item.lines == 1 and "" or "s") or ""
  return string.format("block %d%s%s, %d bytes, %s", item.number, of, lines, item.data_bytes,
                       status_text(item))
end

function SHOW.block(tree, range, item)
  local text = block_text(item)
  local block = tree:add(scanner, range, "Image data, " .. text)
  block:add(f.block_number, item.number)
  if item.count > 0 then block:add(f.block_count, item.count) end
  if item.lines > 0 then block:add(f.block_lines, item.lines) end
  block:add(f.block_bytes, item.data_bytes)
  if item.asked ~= nil then block:add(f.asked, item.asked):set_generated() end
  local data_bytes = item.length - (item.has_status_byte and 1 or 0)
  if data_bytes > 0 then block:add(f.block_data, range(0, data_bytes)) end
  if item.length < item.reported then block:add_proto_expert_info(e.cut) end
  if item.status ~= nil and item.is_whole then
    local status = item.has_status_byte and block:add(f.block_status, range(data_bytes, 1))
        or block:add(f.block_status, item.status)
    if has_bit(item.status, ERROR_BIT) then status:add_proto_expert_info(e.trouble) end
  end
  return text
end

function SHOW.part(tree, range)
  tree:add(f.part, range)
  return "first part"
end

function SHOW.cut(tree)
  tree:add_proto_expert_info(e.cut)
  return "reply not kept"
end

function SHOW.stray(tree, range)
  tree:add(f.unexpected, range):add_proto_expert_info(e.stray)
  return range:len() .. " unexpected bytes"
end

-- A message that came in several packets is shown whole in the last of them.
local function range_of(tvb, item)
  if item.bytes ~= nil and #item.bytes > item.length then
    return ByteArray.new(item.bytes, true):tvb("Reassembled message")()
  end
  if item.length <= 0 then return tvb() end
  return tvb(item.offset, item.length)
end

local function show(items, tvb, pinfo, tree)
  local branch = tree:add(scanner, tvb())
  local texts = {}
  for _, item in ipairs(items) do
    texts[#texts + 1] = SHOW[item.kind](branch, range_of(tvb, item), item)
  end
  local info = table.concat(texts, "; ")
  branch:append_text(": " .. info)
  for _, usb_result in ipairs(usb_results) do
    local result = usb_result()
    if result ~= nil and result.value ~= 0 and result.value ~= IN_PROGRESS then
      branch:add_proto_expert_info(e.failed)
      info = info .. " (the transfer failed)"
    end
  end
  pinfo.cols.protocol = "PMDDB832"
  pinfo.cols.info = info
end

---------------------------------------------------------------------------------------------------
-- Which packets are a scanner's

local function follow(device, packet, is_from_scanner, frame)
  local items = {}
  if is_from_scanner then
    follow_scanner(device, packet, items)
  else
    follow_host(device, packet, items, frame)
  end
  packets[frame] = items
  return items
end

-- The device that sent or got the packet, once it is known for a scanner: by its address, or by a
-- whole command in a packet of its own.
local function find_device(tvb, is_from_scanner)
  local bus, address = usb_bus(), usb_device()
  if bus == nil or address == nil then return nil end
  local key = bus.value .. "." .. address.value
  local wanted = scanner.prefs.device
  if wanted ~= 0 and wanted ~= address.value then return nil end
  if devices[key] == nil then
    local is_scanner = wanted ~= 0 or (not is_from_scanner and looks_like_command(tvb:raw()))
    if is_scanner then devices[key] = new_device() end
  end
  return devices[key]
end

local function dissect(tvb, pinfo, tree)
  local direction = usb_direction()
  if direction == nil then return false end
  local is_from_scanner = direction.value == 1
  if packets[pinfo.number] == nil then
    local device = find_device(tvb, is_from_scanner)
    if device == nil then return false end
    follow(device, {bytes = tvb:raw(), reported = tvb:reported_len()}, is_from_scanner,
           pinfo.number)
  end
  show(packets[pinfo.number], tvb, pinfo, tree)
  return true
end

-- A capture that leaves the picture out keeps its last byte, and a converted file has it in the
-- comment.
local function last_byte_kept()
  for _, comment in ipairs({packet_comment()}) do
    local byte = tostring(comment.value):match("last byte (0x%x+)")
    if byte ~= nil then return tonumber(byte) end
  end
  return nil
end

-- A packet of which nothing but its length was kept is not given to a heuristic.
function scanner.dissector(frame_tvb, pinfo, tree)
  local direction, length, kind = usb_direction(), usb_length(), usb_kind()
  if direction == nil or length == nil or kind == nil or kind.value ~= BULK then return end
  local items = packets[pinfo.number]
  if items == nil and length.value > 0 and frame_tvb:len() < frame_tvb:reported_len() then
    local device = find_device(nil, true)
    if device == nil then return end
    items = follow(device, {bytes = "", reported = length.value, last_byte = last_byte_kept()},
                   direction.value == 1, pinfo.number)
    items.is_empty = true
  end
  if items ~= nil and items.is_empty then show(items, frame_tvb, pinfo, tree) end
end

scanner:register_heuristic("usb.bulk", dissect)
register_postdissector(scanner)
