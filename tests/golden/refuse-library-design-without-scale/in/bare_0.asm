; nothing here
