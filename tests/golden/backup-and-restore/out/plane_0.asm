model


