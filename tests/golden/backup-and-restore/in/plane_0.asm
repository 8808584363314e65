model
